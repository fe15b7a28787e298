# shellcheck shell=bash
# Completion of orbelstatprobe in bash: the options, and the words behind -u and -w.
_orbelstatprobe() {
    local word=${COMP_WORDS[COMP_CWORD]} choices
    local before=" ${COMP_WORDS[*]:1:COMP_CWORD-1} "
    # A finished write does not bear on what follows it.
    before=${before##* -w -u -c}
    before=${before##* -s [01]}
    case $before in
        *" -w -u -p "*" -s ") choices="0 1" ;;
        *" -w -u -p ") choices="0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15" ;;
        *" -w -u -p "*) choices="-s" ;;
        *" -w -u ") choices="-c -m -p" ;;
        *" -w -u -m ") choices="" ;;
        *" -w ") choices="-u" ;;
        *" -u -p ") choices="-a -c 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15" ;;
        *" -u ") choices="-h -p -t" ;;
        *" -u "*) choices="" ;;
        *" -l " | *" -i ") choices="" ;;
        *) choices="-c -d -e -h -i -l -o -r -u -w" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
}
complete -F _orbelstatprobe orbelstatprobe
