# Shared by the scripts; source it first: strict mode, the checkout as current folder, named steps.

set -euo pipefail
manual=$(realpath "$0")
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Announces what comes next.
step()
{
    printf '\n== %s\n' "$*"
}

# Ends the script with a message.
die()
{
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# Prints the comment at the head of the script: its manual.
print_usage()
{
    awk 'NR > 1 { if (!/^#/) exit; sub(/^# ?/, ""); print }' "$manual"
}

# Configures and builds a preset: build_preset NAME [TARGET...]
build_preset()
{
    local preset=$1
    shift
    step "Configure ($preset)"
    cmake --preset "$preset" >"$(log_file "configure-$preset")" 2>&1 \
        || { cat "$(log_file "configure-$preset")" >&2; die "cmake --preset $preset failed"; }
    step "Build ($preset)"
    cmake --build --preset "$preset" ${1:+--target "$@"} || die "the build of $preset failed"
}

# Where the output of a part goes that is shown only when it fails.
log_file()
{
    mkdir -p build/log
    printf 'build/log/%s.log' "$1"
}
