#include "CommandLine.h"

#include "ChangeRequest.h"
#include "CommandOutput.h"
#include "HeadlessCommands.h"
#include "LaunchOptions.h"
#include "Util/AppVersion.h"

#include <cstdio>

namespace orbel {

namespace {

constexpr const char* usage = R"(Usage: orbel COMMAND

Measures where the space on a disk went, moves what you name to the Trash, and
puts it back. Nothing is ever deleted.

  --scan-json ROOT [--top N] [--growth]
                Measure ROOT, a folder or a file, and print a report as JSON:
                totals, what could not be read, the figures of the volume and
                the N largest entries directly in ROOT (20 unless given).
                Sizes are bytes on disk; a hard-linked file counts once, and
                other volumes are not entered. With --growth, a summary of the
                scan is kept for the next one, and the folders that grew most
                since the last one of the same ROOT are added.
  --map-svg ROOT FILE [--size WxH]
                Measure the folder ROOT and draw its map into FILE as an SVG
                picture of W by H pixels (1440x900 unless given). An existing
                FILE is replaced, and only by a complete one.
  --duplicates-json ROOT [--details]
                Find the files of 1 MB and more below ROOT, as far as it lies in
                your home folder, that are the same in every byte, and print
                them in groups as JSON, the group that frees most first. With
                --details, also what each copy takes on disk, what moving all
                but one would free, and which folder was searched.
  --large-json ROOT [--min-bytes N] [--unused-days N]
                Print as JSON the files and packages in ROOT that take N bytes
                or more on disk (100000000 unless given) and that nobody has
                used for N days (365 unless given, 0 for any age): when each
                was last used and how that is known, who has it open, and
                whether it may be moved.
  --tidy-json ROOT
                Print as JSON the empty folders in ROOT, the topmost of those
                inside each other, and the broken shortcuts: links, launchers
                and autostart entries that lead nowhere, and the file manager's
                bookmarks whose folder is gone.
  --trash PATH... [--dry-run]
                Check each PATH, move it to the Trash and note that in the
                journal; print what was moved and what was skipped, and why,
                as JSON. With --dry-run everything is checked and nothing is
                written anywhere. Ctrl+C stops after the item in progress.
  --put-back ID
                Move back what an entry or a session of the journal moved to
                the Trash; "last" is the newest session with anything left.
                Nothing is ever replaced. Prints the outcomes as JSON.
  --journal-json [--since DATE]
  --journal-markdown [--since DATE]
                Print the journal of all moves, or what is in it from DATE on
                (2025-01-31 or 2025-01-31T09:05:00Z, in UTC).
  --apps-json   Print the applications that are installed as JSON: whether each
                can be moved to the Trash, or else what removes it.
  --leftovers-dry-run
                Print for every application what would go with it: its files and
                what it left in the home folder. Nothing is moved.
  --help        Print this text.
  --version     Print the version.

"--" ends the switches of --trash, --put-back and --map-svg, so that names may
begin with "-". An unknown switch beside these is an error, and nothing is
touched.

Results go to standard output, words to standard error. What cannot be read is
counted in a report and is no failure. The status is 0 when all was done, 1 when
something was skipped, not put back or not printed, 2 when the command was not
understood.
)";

} // namespace

std::optional<int> runCommandIfRequested(std::span<const std::string> arguments, std::string_view moreHelp) {
    const auto switches = switchesIn(arguments);
    if (contains(switches, "--help")) {
        std::fputs(usage, stdout);
        std::fwrite(moreHelp.data(), 1, moreHelp.size(), stdout);
        return ExitStatus::done;
    }
    if (contains(switches, "--version")) {
        std::printf("orbel %s\n", appVersion().c_str());
        return ExitStatus::done;
    }
    HeadlessCommands::runIfRequested(arguments);
    return std::nullopt;
}

int runCommandLine(std::span<const std::string> arguments) {
    if (const auto status = runCommandIfRequested(arguments, ""))
        return *status;
    std::fputs(usage, stderr);
    return ExitStatus::wrongUsage;
}

} // namespace orbel
