# Completion of orbel and ostrevo-orbel for fish.

function __orbel_has
    for word in $argv
        contains -- $word (commandline -opc); and return 0
    end
    return 1
end

set -l commands --scan-json --compare-json --map-svg --duplicates-json --large-json --tidy-json --rebuildable-json --trash --put-back \
    --export-ncdu --journal-json --journal-markdown --system-json --apps-json --leftovers-dry-run --leftovers-json \
    --help --version
set -l first "not __orbel_has $commands"

for program in orbel ostrevo-orbel
    complete -c $program -f
    complete -c $program -n "$first" -l scan-json -x -a "(__fish_complete_directories)" -d "Measure a folder"
    complete -c $program -n "$first" -l compare-json -r -F -d "List what changed between two scans"
    complete -c $program -n "$first" -l map-svg -x -a "(__fish_complete_directories)" -d "Draw the map of a folder"
    complete -c $program -n "$first" -l export-ncdu -x -a "(__fish_complete_directories)" -d "Export a scan for ncdu"
    complete -c $program -n "$first" -l duplicates-json -x -a "(__fish_complete_directories)" -d "List identical files"
    complete -c $program -n "$first" -l large-json -x -a "(__fish_complete_directories)" -d "List large and old files"
    complete -c $program -n "$first" -l tidy-json -x -a "(__fish_complete_directories)" -d "List empty folders, broken shortcuts"
    complete -c $program -n "$first" -l rebuildable-json -x -a "(__fish_complete_directories)" -d "List what programs make again"
    complete -c $program -n "$first" -l trash -d "Move items to the Trash"
    complete -c $program -n "$first" -l put-back -x -a last -d "Move back what was moved"
    complete -c $program -n "$first" -l journal-json -d "Print the journal as JSON"
    complete -c $program -n "$first" -l journal-markdown -d "Print the journal as text"
    complete -c $program -n "$first" -l system-json -d "List what commands free outside the home"
    complete -c $program -n "$first" -l apps-json -d "List applications"
    complete -c $program -n "$first" -l leftovers-dry-run -d "What would go with each application"
    complete -c $program -n "$first" -l leftovers-json -d "The same as JSON, and what removed ones left"
    complete -c $program -n "$first" -s h -l help -d "Print the usage"
    complete -c $program -n "$first" -s V -l version -d "Print the version"
    complete -c $program -n "__orbel_has --scan-json --compare-json" -l top -x -d "List so many entries"
    complete -c $program -n "__orbel_has --scan-json" -l depth -x -d "Show so many levels"
    complete -c $program -n "__orbel_has --scan-json" -l growth -d "Add what grew since the last scan"
    complete -c $program -n "__orbel_has --scan-json" -l save -r -d "Keep the scan in a file"
    complete -c $program -n "__orbel_has --map-svg" -l size -x -d "Width and height: 1440x900"
    complete -c $program -n "__orbel_has --duplicates-json" -l details -d "Add what each copy takes on disk"
    complete -c $program -n "__orbel_has --scan-json --large-json" -l min-bytes -x -d "Smallest size"
    complete -c $program -n "__orbel_has --large-json" -l unused-days -x -d "Days without a use"
    complete -c $program -n "__orbel_has --scan-json --compare-json --map-svg --export-ncdu --duplicates-json --large-json --tidy-json --rebuildable-json" -l exclude -r -F -d "Leave out what matches"
    complete -c $program -n "__orbel_has --trash" -l files0-from -r -F -d "Take the paths from a file"
    complete -c $program -n "__orbel_has --trash" -l keep -r -F -d "Move only copies of this file"
    complete -c $program -n "__orbel_has --trash" -l dry-run -d "Check, and write nothing"
    complete -c $program -n "__orbel_has --journal-json --journal-markdown" -l since -x -d "From this date on"
    complete -c $program -n "__orbel_has --trash --compare-json --map-svg --export-ncdu" -F
end

complete -c orbel -n "$first" -F
complete -c orbel -n "$first" -l top -x -d "List so many entries"
complete -c orbel -n "$first" -l depth -x -d "Show so many levels"
complete -c orbel -n "$first" -l min-bytes -x -d "Smallest size"
complete -c orbel -n "$first" -l exclude -r -F -d "Leave out what matches"

complete -c ostrevo-orbel -n "$first" -l scan -x -a "(__fish_complete_directories) volume" -d "Measure at once"
complete -c ostrevo-orbel -n "$first" -l scan-delay -x -d "Seconds before the scan"
complete -c ostrevo-orbel -n "$first" -l open-scan -r -F -d "Show a scan that was kept"
complete -c ostrevo-orbel -n "$first" -l open -x -a "overview map large duplicates uninstall tidy journal" -d "Show a screen"
complete -c ostrevo-orbel -n "$first" -l select-app -x -d "Show an app on the screen Uninstall"
complete -c ostrevo-orbel -n "$first" -l appearance -x -a "light dark" -d "Light or dark"
complete -c ostrevo-orbel -n "$first" -l snapshot -r -F -d "Write a picture of the window"
complete -c ostrevo-orbel -n "$first" -l snapshot-delay -x -d "Seconds before the picture"
complete -c ostrevo-orbel -n "$first" -l simulate-hover -x -d "Move the pointer so many times"
complete -c ostrevo-orbel -n "$first" -l diagnostics -r -F -d "Write what the run took"
complete -c ostrevo-orbel -n "$first" -l quit-after-scan -d "End when all is done"
