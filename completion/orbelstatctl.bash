# shellcheck shell=bash
# Completion of orbelstatctl in bash: commands, options, paths name by name as `orbelstatctl list`
# has them, directories of captures, and files where input or output is redirected.

# Offers the names and indices that a path goes on with. With an END for fields, only for those that
# may be written, and with "table" only for arrays of records. The word that ends the path stays as
# it is typed, and what is added to it is escaped if it is.
_orbelstatctl_paths() { # PROGRAM WORD PATH [END [table]]
    local path=${3//[\\\"\']/} outer='' index='' rest after='' piece last=none i
    local -a pieces
    path=${path//'[*]'/[0]} # which list prints as it is
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
        [[ $piece != "$last" && (! $5 || $rest == *].*) ]] || continue
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
    local path=${COMP_LINE:0:COMP_POINT} command='' option='' options choices='' word next i
    local -a operands
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]} next=${COMP_WORDS[i + 1]}
        if [[ $word == [\<\>]* ]]; then
            ((++i)) # and the file after it
        elif [[ $word == [0-9] && $next == [\<\>]* && $COMP_LINE == *" $word$next"* ]]; then
            : # the descriptor that is redirected
        elif [[ $option ]]; then
            [[ $word == = ]] || option=''
        elif [[ $word == --from || $command$word == watch-[in] ]]; then
            option=$word # and a value after it
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
    path=${path##*[[:blank:]]} # the words are split at an =, and in quotes $2 is only a part of it
    case $command in
        '') options='--from --help --version' ;;
        list) options='-a -w --from --help' ;;
        get) options='-n -w --from --help' ;;
        set) options='- --dry-run --help' ;;
        watch) options='-i -n --csv --help' ;;
        json | table | metrics) options='--from --help' ;;
        *) options='--help' ;;
    esac
    case $option,$2,$command,${#operands[@]} in
        --from,*) compopt -o dirnames ;;
        -*) ;;
        ,-*) choices=$options ;;
        ,*,,0) choices='list get set json table diff watch metrics save' ;;
        ,*,save,0 | ,*,diff,[01]) compopt -o dirnames ;;
        ,*,table,0) _orbelstatctl_paths "$1" "$2" "$path" '' table ;;
        ,*,table,*) # a field
            word=${operands[0]//[\\\"\']/}
            [[ $word == *']' ]] || word+='[0]'
            _orbelstatctl_paths "$1" "$2" "$word.$path"
            ;;
        ,*,set,*)
            [[ $path == *=* || ${operands[0]} == - ]] || _orbelstatctl_paths "$1" "$2" "$path" =
            ;;
        ,*,json,0 | ,*,list,* | ,*,get,* | ,*,watch,* | ,*,metrics,*)
            _orbelstatctl_paths "$1" "$2" "$path"
            ;;
    esac
    mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W "$choices" -- "$2")
}
complete -o nosort -F _orbelstatctl orbelstatctl
