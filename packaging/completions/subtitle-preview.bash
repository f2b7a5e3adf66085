# SPDX-License-Identifier: MIT
# shellcheck shell=bash
_subtitle_preview()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
    COMPREPLY=()
    case $before in
        --appearance) mapfile -t COMPREPLY < <(compgen -W 'light dark' -- "$word"); return ;;
        --size | --scale | --width | --height | --skip) return ;;
        --snapshot) compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -X '!*.png' -- "$word"; compgen -d -- "$word"); return ;;
    esac
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '--snapshot --size --scale --appearance --text --width --height --skip --help --version' -- "$word")
        return
    fi
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -X '!*.@(srt|SRT|vtt|VTT)' -- "$word"; compgen -d -- "$word")
    # A file of another name may be one too.
    [ ${#COMPREPLY[@]} -gt 0 ] || mapfile -t COMPREPLY < <(compgen -f -- "$word")
}
shopt -s extglob
complete -F _subtitle_preview subtitle-preview
