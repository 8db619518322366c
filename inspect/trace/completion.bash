# Completion for zentu-trace
_zentu_trace() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} word words=()
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    [[ $word == -* ]] || words+=("$word")
  done
  COMPREPLY=()
  if [[ $prev == --at ]]; then
    return
  elif [[ $cur == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W '--at --json --output --strict --help --version' -- "$cur")
  elif ((${#words[@]} == 0)); then
    mapfile -t COMPREPLY < <(compgen -W \
      'summary why events contexts leaks timeline graph normal diff follow' -- "$cur")
  else
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$cur")
  fi
}
complete -F _zentu_trace zentu-trace
