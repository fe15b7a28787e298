# shellcheck shell=bash
# bash completion for tolmfill: its options, and the files of redirections.
_tolmfill() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    if [[ $current == [\<\>]* || $previous == [\<\>]* ]]; then
        compopt -o default
    elif ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W '--check --force' -- "$current")
    fi
}
complete -F _tolmfill tolmfill
