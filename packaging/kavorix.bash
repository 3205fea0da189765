# Completion of the commands, options and files of kavorix for bash.
# shellcheck disable=SC2207 # words and lines become the entries of an array, which is what is wanted

# Offers the files with these extensions, in small or capital letters, and folders.
_kavorix_files() {
    local IFS=$'\n' extensions=$1
    _kavorix_folders
    COMPREPLY+=($(shopt -s extglob nocasematch; compgen -f -X "!*.@($extensions)" -- "$current"))
}

_kavorix_folders() {
    local IFS=$'\n'
    compopt -o filenames 2>/dev/null
    COMPREPLY=($(compgen -d -- "$current"))
}

_kavorix_words() {
    COMPREPLY=($(compgen -W "$1" -- "$current"))
}

# The value of the option before the word; fails when that is no option with a value.
_kavorix_value() {
    case $1 in
        --network) _kavorix_files toml ;;
        --driver) _kavorix_files so ;;
        --directory) _kavorix_folders ;;
        --theme) _kavorix_words "system light dark" ;;
        --config) _kavorix_files CFG ;;
        --scans | --events) _kavorix_files DAT ;;
        --speed) _kavorix_words "real max" ;;
        -o) if [ "$2" = plot ]; then _kavorix_files "png|svg|pdf"; else _kavorix_files CSV; fi ;;
        --pod | --pods | --channels | --duration | --interval | --comment | --from | --to) ;;
        *) return 1 ;;
    esac
}

_kavorix() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local commands="discover watch log status convert info repair plot check show statements rewrite verify alarms"
    local common="-h --help --network --driver --directory --theme"
    local command="" own="" i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        case " $commands " in *" ${COMP_WORDS[i]} "*) command=${COMP_WORDS[i]}; break ;; esac
    done
    [ "$command" = alarms ] && for ((i++; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in check | list | history) command="alarms ${COMP_WORDS[i]}"; break ;; esac
    done
    _kavorix_value "$previous" "$command" && return
    case $command in
        watch) own="--pods --config --duration" ;;
        log) own="--pods --config --scans --events --interval --comment --duration --speed" ;;
        status) own="--pods" ;;
        convert) own="-o --channels --force --salvage" ;;
        plot) own="-o --channels" ;;
        check) own="--locate --log" ;;
        show) own="--pod" ;;
        "alarms check") own="--config" ;;
        "alarms history") own="--from --to --csv --measures" ;;
        "") common+=" --version" ;;
    esac
    case $command,$current in
        *,-*) _kavorix_words "$own $common" ;;
        ,*) _kavorix_words "$commands" ;;
        alarms,*) _kavorix_words "check list history" ;;
        "alarms check",*) _kavorix_files toml ;;
        convert,* | info,* | repair,* | plot,*) _kavorix_files DAT ;;
        check,* | show,* | statements,* | rewrite,* | verify,*) _kavorix_files CFG ;;
    esac
}

complete -F _kavorix kavorix
