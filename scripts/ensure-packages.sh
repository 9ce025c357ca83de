# Sourced by the other scripts: installs the Debian packages given as arguments when any of them
# is missing (running `apt-get update` once first). Needs root, as on the project's machines.
ensure_packages() {
    local missing=()
    local pkg
    for pkg in "$@"; do
        dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed' ||
            missing+=("$pkg")
    done
    if [ "${#missing[@]}" -gt 0 ]; then
        echo "installing: ${missing[*]}"
        export DEBIAN_FRONTEND=noninteractive
        apt-get update -q
        apt-get install -y -q "${missing[@]}"
    fi
}
