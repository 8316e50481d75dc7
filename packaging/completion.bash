# bash completion for quorlsdr and quorlsdr-cli. Commands, options and their words are those that the program tells by
# --help, so that they are those of the program that is installed.

# Lines of the section $1 of a help text on standard input.
_quorlsdr_section() {
  sed -n "/^$1:\$/,/^\$/p" | sed 1d
}

# The words of which one may follow the option $1: those between bars, in a help text on standard input.
_quorlsdr_words() {
  local name words
  while read -r name words _; do
    case ,$name, in
    *,"$1",*)
      [[ $words == *'|'* ]] && tr '|' '\n' <<<"$words" | grep -Ex '[a-z0-9-]+'
      return
      ;;
    esac
  done < <(_quorlsdr_section Options)
}

# Whether a value follows the option $1.
_quorlsdr_takes_value() {
  local option=${1//./\\.}
  _quorlsdr_section Options | grep -Eq -- "^  (-[a-z],)?$option [A-Z0-9a-z-]"
}

_quorlsdr() {
  local program=$1 current=$2 before=$3 word help candidates=
  local -a path=()
  help=$("$program" --help 2>/dev/null) || return
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    _quorlsdr_section Subcommands <<<"$help" | grep -Eq -- "^  $word( |\$)" || continue
    path+=("$word")
    help=$("$program" "${path[@]}" --help 2>/dev/null) || return
  done
  if [[ $before == -* ]] && _quorlsdr_takes_value "$before" <<<"$help"; then
    candidates=$(_quorlsdr_words "$before" <<<"$help")
  elif [[ $current == -* ]]; then
    candidates=$(_quorlsdr_section Options <<<"$help" | sed -En 's/^  (-[^ ]+).*/\1/p' | sed 's/{false}//; s/,/\n/g')
  else
    candidates=$(_quorlsdr_section Subcommands <<<"$help" | sed -En 's/^  ([a-z]+) .*/\1/p')
    [[ $help == *'[trace]'* ]] && candidates+=' trace'
  fi
  mapfile -t COMPREPLY < <(compgen -W "$candidates" -- "$current")
}

complete -o bashdefault -o default -F _quorlsdr quorlsdr quorlsdr-cli
