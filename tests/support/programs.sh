# Sourced by scripts that run the programs in the folder of their first argument: an empty working folder, which
# is thrown away at the end, and the counting of failures.
overcurrent=$1/kes-overcurrent
work=$(mktemp -d) || exit 1
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0

fail() {
    echo "FAILED: $*"
    failures=$((failures + 1))
}

# The last command of a script.
conclude() {
    [ $failures -eq 0 ] && echo "All is well"
    exit $((failures > 0))
}
