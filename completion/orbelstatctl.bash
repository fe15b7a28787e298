# shellcheck shell=bash
# bash completion for orbelstatctl: commands, options, the next name of a path (from `orbelstatctl
# list`), capture directories, and the files of redirections.

# Completes the next name or index of a path. If END is given, offers only writable fields and appends
# END to them; with "table", offers only arrays of records. WORD stays as it was typed; the text that is
# appended is escaped if WORD is.
_orbelstatctl_paths() { # PROGRAM WORD PATH [END [table]]
    local path=${3//[\\\"\']/} outer='' index='' rest after='' piece last=none i
    local -a pieces
    path=${path//'[*]'/[0]} # list prints [*] unchanged, so ask for [0]
    case ${path##*]} in
        '') outer=$path ;;
        *[[]*) index=[${path##*[[]} path=${path%[[]*} outer=${path%[[]*} ;;
        *.*) outer=${path%.*} ;;
    esac
    while IFS=$'\t' read -r rest _; do
        [[ $rest == "$path"* ]] || continue
        rest=${rest#"$path"}
        piece=${rest:1}
        piece=${rest:0:1}${piece%%[.[]*}
        [[ $piece != "$last" && (! $5 || ${rest//..} == *.*) ]] || continue
        last=$piece pieces=("$piece") after=${rest#"$piece"}
        if [[ $rest == [[]* ]]; then
            pieces=('[*]') after=${rest#*]} rest=${rest%%]*}
            for ((i = ${rest##*[.[]}; i >= 0; --i)); do
                pieces=("[$i]" "${pieces[@]}")
            done
        fi
        for piece in "${pieces[@]}"; do
            [[ $piece == "$index"* ]] || continue
            piece=${piece#"$index"}
            [[ $after ]] || piece+=$4
            [[ $2 != *\\* || ! $piece ]] || printf -v piece %q "$piece"
            COMPREPLY+=("$2$piece")
        done
    done < <("$1" list ${4:+-w} ${outer:+"$outer"} 2>/dev/null)
    [[ ! $4 && ! $after ]] || compopt -o nospace
}

_orbelstatctl() {
    local path=${COMP_LINE:0:COMP_POINT} command='' option='' choices='' help word next i
    local -a operands
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]} next=${COMP_WORDS[i + 1]}
        if [[ $word == [\<\>]* ]]; then
            ((++i)) # skip the file
        elif [[ $word == [0-9] && $next == [\<\>]* && $COMP_LINE == *" $word$next"* ]]; then
            : # a file descriptor
        elif [[ $option ]]; then
            [[ $word == = ]] || option=''
        elif [[ $word == --from || $command$word == @(diff-p|watch-[in]|wait-[it]) ]]; then
            option=$word # its value follows
        elif [[ ! $command && $word != -* ]]; then
            command=$word
        elif [[ $word != -?* ]]; then
            operands+=("$word")
        fi
    done
    if ((i > COMP_CWORD)) || [[ ${COMP_WORDS[COMP_CWORD]} == [\<\>]* ]]; then
        compopt -o default
        return
    fi
    path=${path##*[[:blank:]]} # $2 is only a part of the word if it contains = or a quote
    help=$("$1" ${command:+"$command"} --help 2>/dev/null)
    case $option,$2,$command,${#operands[@]} in
        --from,*) compopt -o dirnames ;;
        -p,*,diff,*) _orbelstatctl_paths "$1" "$2" "$path" ;;
        -*) ;;
        ,-*) # the options in the help, with those that all commands have
            choices=$(sed -n 's/^  \(-[^ ,]*\)\(, \(-[^ ]*\)\)\?.*/\1 \3/p' <<<"$help")
            [[ ! $command ]] || choices+=' --help'
            [[ $help != *'[--from'* || ! $command ]] || choices+=' --from'
            [[ $command != @(set|undo) ]] || choices+=' -'
            ;;
        ,*,,0) choices=$(sed -n 's/^  \([a-z]*\)  *[A-Z].*/\1/p' <<<"$help") ;;
        ,*,save,0 | ,*,diff,[01]) compopt -o dirnames ;;
        ,*,undo,0) compopt -o default ;;
        ,*,table,0) _orbelstatctl_paths "$1" "$2" "$path" '' table ;;
        ,*,table,*) # a field
            word=${operands[0]//[\\\"\']/}
            ! "$1" list "${word}[0]" &>/dev/null || word+='[0]'
            _orbelstatctl_paths "$1" "$2" "$word.$path"
            ;;
        ,*,set,*)
            [[ $path == *=* || ${operands[0]} == - ]] || _orbelstatctl_paths "$1" "$2" "$path" =
            ;;
        ,*,json,0 | ,*,list,* | ,*,get,* | ,*,watch,* | ,*,wait,* | ,*,metrics,*)
            [[ $path == *[=!\<\>]* ]] || _orbelstatctl_paths "$1" "$2" "$path"
            ;;
    esac
    mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W "$choices" -- "$2")
}
complete -o nosort -F _orbelstatctl orbelstatctl
