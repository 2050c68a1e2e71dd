# Completion of quorvane's command line for bash.
_quorvane() {
    local current=${COMP_WORDS[COMP_CWORD]} first=${COMP_WORDS[1]} title
    COMPREPLY=()
    if [ "$COMP_CWORD" = 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "--hide --stop --change --discard --status --locations --show --quit \
            --unlock --version --help -hide" -- "$current")
        return
    fi
    case $first in
    --status) mapfile -t COMPREPLY < <(compgen -W "--json --follow" -- "$current") ;;
    --locations) mapfile -t COMPREPLY < <(compgen -W "--json" -- "$current") ;;
    --hide)
        # Titles contain blanks: each is one word, quoted for the shell.
        while IFS= read -r title; do
            title=$(printf '%q' "$title")
            case $title in "$current"*) COMPREPLY+=("$title") ;; esac
        done < <(quorvane --locations 2>/dev/null)
        ;;
    esac
}
complete -F _quorvane quorvane
