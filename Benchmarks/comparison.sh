# Shared by the scripts that time orbel beside other programs, which source it after tools/prepare.sh. They set `programs`
# to the names of the programs and define commandLine(), which puts the words that run one of them on a subject in a
# state into `command`, and prepares what that run needs.

# The line that each run of a program adds to: state, subject, program, wall, user, system seconds, KiB.
results=$(mktemp)
trap 'rm -f "$results"' EXIT

# Builds measure-program and the named helpers into `tools`, and orbel unless `program` names another one.
buildComparison() {
    tools=$root/build/benchmarks/bin
    ensurePackages "${buildPackages[@]}" "${benchmarkPackages[@]}"
    lockBuild
    quietly inRoot cmake --preset benchmarks
    quietly inRoot cmake --build --preset benchmarks --target measure-program "$@"
    if [ -z "$program" ]; then
        releaseIsConfigured || configureRelease
        buildRelease orbel orbel
        program=$releaseFolder/bin/orbel
    fi
    releaseBuild
}

# Fails unless the folder is on a disk's file system.
requireDisk() { # the folder, the option that names another one
    case $(stat -f -c %T "$1") in
    tmpfs | ramfs | overlayfs) fail "$1 is not on a disk's file system; name another folder with $2" ;;
    esac
}

# Whether the caches can be dropped, which cold rounds need.
canDropCaches() {
    [ -w /proc/sys/vm/drop_caches ] && return 0
    say "Only root can drop the caches: no cold rounds"
    return 1
}

describeMachine() { # the folder that is measured
    local processor memory load
    processor=$(sed -n '/^model name/{s/.*: //p;q}' /proc/cpuinfo)
    memory=$(awk '/^MemTotal/ { printf "%.0f GiB", $2 / 1048576 }' /proc/meminfo)
    read -r load _ </proc/loadavg
    echo "Machine: $(nproc) cores ($processor), $memory, Linux $(uname -r), $(df --output=fstype "$1" | tail -n 1)," \
        "load $load before the first run"
    if awk -v load="$load" -v cores="$(nproc)" 'BEGIN { exit !(load > cores / 2) }'; then
        say "The machine is busy (load $load): the figures will say little"
    fi
}

# Runs each program once on a subject and notes what it cost. Each round begins with another program: a disk that is
# shared answers faster after a rest.
measureRound() {
    local state=$1 subject=$2 round=$3 turn name command figures
    for ((turn = 0; turn < ${#programs[@]}; ++turn)); do
        name=${programs[(round + turn) % ${#programs[@]}]}
        commandLine "$name" "$subject" "$state"
        if [ "$state" = cold ]; then
            sync
            echo 3 >/proc/sys/vm/drop_caches
        fi
        figures=$("$tools/measure-program" "${command[@]}") || fail "failed: ${command[*]}"
        echo "$state $subject $name $figures" >>"$results"
    done
}

# Prints what was measured by the awk program on standard input, which has the functions of comparison.awk. Its exit
# status is 1 when a target was missed.
evaluate() {
    awk -v order="${programs[*]}" -f "$root/Benchmarks/comparison.awk" -f <(cat) "$results"
}
