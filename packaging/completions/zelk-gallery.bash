# SPDX-License-Identifier: MIT
# shellcheck shell=bash
_zelk_gallery()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
    COMPREPLY=()
    case $before in
        --page) mapfile -t COMPREPLY < <(compgen -W "$(zelk-gallery --list 2>/dev/null)" -- "$word"); return ;;
        --shoot) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- "$word"); return ;;
        --scale) return ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W '--page --shoot --scale --list --help --version' -- "$word")
}
complete -F _zelk_gallery zelk-gallery
