# shellcheck shell=bash
# bash completion for orbelstatprobe: options, the words after -u and -w, and the files of
# redirections.
_orbelstatprobe() {
    local current=${COMP_WORDS[COMP_CWORD]} state=options choices='' word next i
    local policies='0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15'
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]} next=${COMP_WORDS[i + 1]}
        if [[ $word == [\<\>]* ]]; then
            ((++i)) # skip the file
            continue
        elif [[ $word == [0-9] && $next == [\<\>]* && $COMP_LINE == *" $word$next"* ]]; then
            continue # a file descriptor
        fi
        # A state has the name of the words that lead to it.
        case "$state $word" in
            'options --') state=end ;;
            'options -'*[il]) state=number ;;
            'options -'*[il]*) ;; # the word contains the number
            'options -'*u) state=-u ;;
            'options -'*w) state=-w ;;
            'options '*) ;;
            '-u -p') state='-u -p' ;;
            '-w -u') state='-w -u' ;;
            '-w -u -c') state=options ;;
            '-w -u -p') state='-w -u -p' ;;
            '-w -u -p '*) state=policy ;;
            'policy -s') state=-s ;;
            '-s '* | 'number '*) state=options ;;
            *) state=end ;;
        esac
    done
    if ((i > COMP_CWORD)) || [[ $current == [\<\>]* ]]; then
        compopt -o default
        return
    fi
    case $state in
        options) choices='-c -d -e -h -i -l -o -r -u -w' ;;
        -u) choices='-h -p -t' ;;
        '-u -p') choices="-a -c $policies" ;;
        -w) choices=-u ;;
        '-w -u') choices='-c -m -p' ;;
        '-w -u -p') choices=$policies ;;
        policy) choices=-s ;;
        -s) choices='0 1' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$current")
}
complete -o nosort -F _orbelstatprobe orbelstatprobe
