# bash completion for zelnor

_zelnor()
{
    local word=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    if [[ $word == -* && " ${COMP_WORDS[*]:0:COMP_CWORD} " != *" -- "* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '--background --preferences --quit --index --root --help' -- "$word")
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
    fi
}
complete -F _zelnor zelnor
