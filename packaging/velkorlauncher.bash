# Completion of velkorlauncher's options for bash.
_velkorlauncher() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    case $previous in
        -p | --startup-server | -x | --extra-test-servers | -c | --client-args) return ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "--client-args --disable-web-gui --exit-after-refresh --extra-test-servers --help
        --skip-test-servers --skip-version-check --startup-server --telemetry --updating --verify-after-refresh" -- "$current")
}
complete -F _velkorlauncher velkorlauncher
