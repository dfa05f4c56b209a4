# Reads the results of a comparison (comparison.sh) and has what prints them. The program that is added ends with
# END { …; exit missed }.

function median(list,    count, values, i, j, held) {
    count = split(list, values, " ")
    for (i = 2; i <= count; ++i)
        for (j = i; j > 1 && values[j - 1] + 0 > values[j] + 0; --j) {
            held = values[j]; values[j] = values[j - 1]; values[j - 1] = held
        }
    return count % 2 ? values[(count + 1) / 2] : (values[count / 2] + values[count / 2 + 1]) / 2
}

function isMeasured(state, subject) {
    return (state, subject, "orbel") in wall
}

# One line for each program: its medians, its peak, and how orbel compares with it.
function table(state, subject,    i, name, key, programCount, programs) {
    if (!isMeasured(state, subject)) return
    printf "\n%s, %s\n%-9s %9s %9s %9s %10s %12s\n", subject, state, "", "wall s", "user s", "system s", "peak MiB", \
        "orbel / it"
    programCount = split(order, programs, " ")
    for (i = 1; i <= programCount; ++i) {
        name = programs[i]
        key = state SUBSEP subject SUBSEP name
        if (!(key in wall)) continue
        wallMedian[key] = median(wall[key])
        printf "%-9s %9.3f %9.3f %9.3f %10.1f %12s\n", name, wallMedian[key], median(user[key]), \
            median(kernel[key]), peak[key] / 1024, \
            name == "orbel" ? "" : sprintf("%.2f", wallMedian[state, subject, "orbel"] / wallMedian[key])
    }
}

function verdict(what, figure, limit, form) {
    printf "  %-6s %-40s " form ", at most " form "\n", figure <= limit ? "held" : "MISSED", what, figure, limit
    if (figure > limit) missed = 1
}

# The time of orbel as a part of another program's; after their table.
function target(state, subject, other, limit) {
    if (isMeasured(state, subject))
        verdict(subject ", " state ", against " other, \
                wallMedian[state, subject, "orbel"] / wallMedian[state, subject, other], limit, "%.2f")
    else
        printf "  %-6s %s, %s, against %s\n", "-", subject, state, other
}

function peakTarget(state, subject, mebibytes) {
    if (isMeasured(state, subject))
        verdict(subject ", " state ", peak MiB", peak[state, subject, "orbel"] / 1024, mebibytes, "%.1f")
    else
        printf "  %-6s %s, %s, peak MiB\n", "-", subject, state
}

{
    key = $1 SUBSEP $2 SUBSEP $3
    wall[key] = wall[key] " " $4
    user[key] = user[key] " " $5
    kernel[key] = kernel[key] " " $6
    if ($7 > peak[key]) peak[key] = $7
}
