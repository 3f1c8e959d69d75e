# bash completion for lumetra(1)
# Installed as share/bash-completion/completions/lumetra; needs nothing from the
# bash-completion package, so it can also be sourced by hand.

_lumetra() {
    local cur prev
    cur=${COMP_WORDS[COMP_CWORD]}
    prev=""
    ((COMP_CWORD > 0)) && prev=${COMP_WORDS[COMP_CWORD - 1]}

    local formats="text json waybar i3bar"
    local styles="classic ring compactRow sparklineArea grid"
    [[ " ${COMP_WORDS[*]} " == *" --label "* ]] && styles="textOnly iconAndText compactGraph miniBar"
    local themes="light dark"

    # --option=value: complete the value after the equals sign. Bash splits at '=' when it is
    # in COMP_WORDBREAKS (the default), so the option is then the previous word.
    local option="" value=""
    if [[ $cur == --*=* ]]; then
        option=${cur%%=*}
        value=${cur#*=}
    elif [[ $cur == = && $prev == --* ]]; then
        option=$prev
    elif [[ $prev == = ]] && ((COMP_CWORD > 1)); then
        option=${COMP_WORDS[COMP_CWORD - 2]}
        value=$cur
    else
        option=$prev
        value=$cur
        [[ $option == --format || $option == --root || $option == --snapshot || $option == --top ||
            $option == --style || $option == --theme ]] || option=""
    fi

    local -a values=()
    case $option in
    --format) mapfile -t values < <(compgen -W "$formats" -- "$value") ;;
    --style) mapfile -t values < <(compgen -W "$styles" -- "$value") ;;
    --theme) mapfile -t values < <(compgen -W "$themes" -- "$value") ;;
    --top) mapfile -t values < <(compgen -W "3 5 10" -- "$value") ;;
    --root)
        compopt -o filenames 2>/dev/null
        mapfile -t values < <(compgen -d -- "$value")
        ;;
    --snapshot)
        compopt -o filenames 2>/dev/null
        # Directories to walk into, and the PNG files already there.
        mapfile -t values < <(
            compgen -d -- "$value"
            compgen -f -X '!*.[pP][nN][gG]' -- "$value"
        )
        ;;
    *)
        if [[ $cur == -* || -z $cur ]]; then
            local options="--print --watch --format --root --top --settings --snapshot --label
                --style --theme --help --version"
            mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
        else
            COMPREPLY=()
        fi
        return 0
        ;;
    esac
    # When the word was "--option=value" as one word, keep the option in front.
    if [[ $cur == --*=* ]]; then
        COMPREPLY=("${values[@]/#/$option=}")
    else
        COMPREPLY=("${values[@]}")
    fi
    return 0
}

complete -F _lumetra lumetra
