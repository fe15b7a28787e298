# shellcheck shell=bash
# Completion of orbelstatctl in bash: commands, paths name by name as `orbelstatctl list` has them,
# directories to save to, and files where input or output is redirected.

# Offers the names that go on from a path: of groups and arrays, and of fields, with an = after
# those to be written.
_orbelstatctl_paths() { # PROGRAM PATH [=]
    local typed=${2//\\/} outer='' field bounds rest name='' is_field=1
    [[ $typed != *[.[]* ]] || outer=${typed%[.[]*}
    while IFS=$'\t' read -r field _ _ _ bounds; do
        if [[ $field != "$typed"* || ($3 && ! $bounds) || ($name && $field == "$name"[.[]*) ]]; then
            continue
        fi
        rest=${field#"$typed"}
        name=${rest:1}
        name=$typed${rest:0:1}${name%%[.[]*}
        if [[ $name == "$field" ]]; then
            COMPREPLY+=("$name$3")
        else
            COMPREPLY+=("$name")
            is_field=
        fi
    done < <("$1" list ${outer:+"$outer"} 2>/dev/null)
    [[ ! $name || ($is_field && ! $3) ]] || compopt -o nospace
}

_orbelstatctl() {
    local current=${COMP_WORDS[COMP_CWORD]} line=${COMP_LINE:0:COMP_POINT} choices='' word next i
    local -a words
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]} next=${COMP_WORDS[i + 1]}
        if [[ $word == [\<\>]* ]]; then
            ((++i)) # and the file after it
        elif [[ $word != [0-9] || $next != [\<\>]* || $COMP_LINE != *" $word$next"* ]]; then
            words+=("$word") # unless it is the descriptor that is redirected
        fi
    done
    if ((i > COMP_CWORD)) || [[ $current == [\<\>]* ]]; then
        compopt -o default
        return
    fi
    case ${words[*]} in
        '') choices='get json list save set --help --version' ;;
        save) compopt -o dirnames ;;
        list | json | get | 'get '*) _orbelstatctl_paths "$1" "$2" ;;
        'set -' | 'set --dry-run -') ;;
        'set' | 'set '*)
            case ${words[*]} in
                'set') choices='- --dry-run' ;;
                'set --dry-run') choices=- ;;
            esac
            # A value is a word of its own here, but not on the command line.
            [[ ${line##*[[:blank:]]} == *=* ]] || _orbelstatctl_paths "$1" "$2" =
            ;;
    esac
    mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W "$choices" -- "$current")
}
complete -o nosort -F _orbelstatctl orbelstatctl
