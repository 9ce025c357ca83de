# Sourced by the other scripts: installs the Debian packages, and the npm packages of the page
# checks, that a script needs when any of them is missing. Needs root, as on the project's
# machines.

# Installs the Debian packages given as arguments when any of them is missing (running
# `apt-get update` once first).
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

# The npm packages of package-lock.json (the browser tests' Chromium driver and the page script and
# style sheet linters), installed with `npm ci` when they are not installed as locked. Installs
# nodejs/npm where no node or npm command exists (the machine's Node.js may bring its own npm),
# together with the Debian packages given as arguments.
ensure_node_packages() {
    local wanted=("$@")
    command -v node >/dev/null || wanted+=(nodejs)
    command -v npm >/dev/null || wanted+=(npm)
    if [ "${#wanted[@]}" -gt 0 ]; then
        ensure_packages "${wanted[@]}"
    fi
    if ! npm ls --depth=0 >/dev/null 2>&1; then
        npm ci --no-audit --no-fund
    fi
}
