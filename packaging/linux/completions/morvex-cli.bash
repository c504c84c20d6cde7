# Completion of morvex-cli for bash.

_morvex_cli() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command=${COMP_WORDS[1]} common='--list --separator --joker --strict --quiet --help'
  COMPREPLY=()

  if ((COMP_CWORD == 1)); then
    mapfile -t COMPREPLY < <(compgen -W 'run check filter -if --help --version' -- "$current")
    return
  fi
  case $previous in
    --separator | --joker | --ext | -dy) return ;;
    --list-encoding)
      mapfile -t COMPREPLY < <(compgen -W 'auto utf-8 windows-1252' -- "$current")
      return
      ;;
    --list | --from | --report | -if)
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      return
      ;;
  esac
  if [[ $current == -* ]]; then
    case $command in
      run) common+=' --from --ext --all --log --yes --report' ;;
      check) common+=' --list-encoding --json' ;;
      filter) ;;
      *) common='-dy' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$common" -- "$current")
  elif [[ $command == run || $command == check ]]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}

complete -o filenames -F _morvex_cli morvex-cli
