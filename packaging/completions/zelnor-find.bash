# bash completion for zelnor-find

_zelnor_find()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local options='--category --size --date --sort --desc --limit --count --long --null --json --rebuild --root --exclude
        --skip-packages --skip-hidden --skip-symlinks --index --status --stdin --help --version'
    local words=
    COMPREPLY=()
    case $before in
        --category) words='all document image video audio archive code executable folder' ;;
        --size) words='any tiny small medium large huge enormous' ;;
        --date) words='any today week month three_months year custom' ;;
        --sort) words='relevance name path size date' ;;
        --skip-packages) words='true false' ;;
        --root | --exclude | --index)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$word")
            return
            ;;
        -n | --limit) return ;;
        *) [[ $word == -* && " ${COMP_WORDS[*]:0:COMP_CWORD} " != *" -- "* ]] && words=$options ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -F _zelnor_find zelnor-find
