# Completion of orbel and ostrevo-orbel for bash.

_orbel() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} word command=
    local commands="--scan-json --compare-json --map-svg --duplicates-json --large-json --tidy-json --rebuildable-json --trash --put-back
        --export-ncdu --journal-json --journal-markdown --system-json --apps-json --leftovers-dry-run --leftovers-json
        --help --version"
    local window="--scan --scan-delay --open-scan --open --select-app --appearance --snapshot --snapshot-delay --simulate-hover --diagnostics
        --quit-after-scan"
    COMPREPLY=()

    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [ "$word" = -- ]; then # behind it are names
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
        fi
        [ -n "$command" ] || [[ " "${commands//$'\n'/ }" " != *" $word "* ]] || command=$word
    done

    case $previous in
        --scan-json | --compare-json | --duplicates-json | --large-json | --tidy-json | --rebuildable-json | --map-svg | --export-ncdu | --scan)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$current")
            [ "$previous" != --scan ] || mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W volume -- "$current")
            return
            ;;
        --snapshot | --diagnostics | --open-scan | --files0-from | --keep | --exclude)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
        --open)
            mapfile -t COMPREPLY < <(compgen -W "overview map large duplicates uninstall tidy journal" -- "$current")
            return
            ;;
        --appearance)
            mapfile -t COMPREPLY < <(compgen -W "light dark" -- "$current")
            return
            ;;
        --put-back)
            mapfile -t COMPREPLY < <(compgen -W last -- "$current")
            return
            ;;
        --top | --depth | --size | --min-bytes | --unused-days | --since | --scan-delay | --select-app | --snapshot-delay | --simulate-hover)
            return
            ;;
    esac

    local more=
    case $command in
        --scan-json) more="--top --depth --min-bytes --growth --save --exclude" ;;
        --compare-json) more="--top --exclude" ;;
        --map-svg) more="--size --exclude" ;;
        --duplicates-json) more="--details --exclude" ;;
        --large-json) more="--min-bytes --unused-days --exclude" ;;
        --tidy-json | --rebuildable-json | --export-ncdu) more=--exclude ;;
        --trash) more="--files0-from --keep --dry-run" ;;
        --journal-json | --journal-markdown) more=--since ;;
        "")
            more=$commands
            [ "${COMP_WORDS[0]##*/}" != orbel ] || more+=" --top --depth --min-bytes --exclude"
            [ "${COMP_WORDS[0]##*/}" != ostrevo-orbel ] || more+=" $window"
            ;;
    esac
    case $command in
        --trash | --compare-json | --map-svg | --export-ncdu)
            if [[ $current != -* ]]; then
                compopt -o filenames 2>/dev/null
                mapfile -t COMPREPLY < <(compgen -f -- "$current")
                return
            fi
            ;;
    esac
    if [ -z "$command" ] && [ "${COMP_WORDS[0]##*/}" = orbel ] && [[ $current != -* ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
        return
    fi
    mapfile -t COMPREPLY < <(compgen -W "$more" -- "$current")
}

complete -F _orbel orbel ostrevo-orbel
