# SPDX-License-Identifier: MIT
complete -c zelk-gallery -f
complete -c zelk-gallery -l page -x -a '(zelk-gallery --list 2>/dev/null)' -d 'Open this page'
complete -c zelk-gallery -l shoot -x -a '(__fish_complete_directories)' -d 'Paint the pages into a folder'
complete -c zelk-gallery -l scale -x -d 'Pixels a point, for --shoot'
complete -c zelk-gallery -l list -d 'Print the names of the pages'
complete -c zelk-gallery -s h -l help -d 'Print a summary of the options'
complete -c zelk-gallery -l version -d 'Print the version'
