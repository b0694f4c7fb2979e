# Completion of bash for halvane: subcommands, options, files, and the layers and fields of the map on the line.

# The layers of a map, or the fields of a layer: _halvane_names MAP [LAYER]
_halvane_names() {
  halvane describe "$1" 2>/dev/null | awk -v layer="${2-}" '
    /^ *(LAYER|MEMBER) .*: feature layer$/ {
      name = $0; sub(/^ *(LAYER|MEMBER) /, "", name); sub(/: feature layer$/, "", name)
      if (layer == "" && !told[name]++) print name
      fields = 0; here = (layer != "" && name == layer); next
    }
    here && /^ *Fields *$/ { match($0, /[^ ]/); fields = RSTART + 2; getline; next }
    here && fields && match($0, /[^ ]/) && RSTART == fields { sub(/^ */, ""); sub(/  .*/, ""); print; next }
    here && fields { exit }'
}

# What --select takes: a layer and "=", then a field of the layer: _halvane_selection MAP WORD SELECTION
_halvane_selection() {
  local map=$1 word=${2//\\/} selection=${3//\\/} name
  # The shell takes the line apart at "=".
  if [[ $selection == *=* ]]; then
    while read -r name; do
      [[ $name == "${selection#*=}"* ]] && COMPREPLY+=("$name")
    done < <(_halvane_names "$map" "${selection%%=*}")
    return
  fi
  compopt -o nospace 2>/dev/null
  while read -r name; do
    [[ $name == "$word"* ]] && COMPREPLY+=("$(printf %q "$name")=")
  done < <(_halvane_names "$map")
}

_halvane() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]} map='' n name
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W 'export check preview describe init schema dialog help --help --version' -- "$word")
    return
  fi
  for ((n = 2; n < COMP_CWORD; ++n)); do
    if [ "${COMP_WORDS[n]}" = --map ]; then
      map=${COMP_WORDS[n + 1]}
      if [ "$map" = = ]; then map=${COMP_WORDS[n + 2]}; fi
    fi
    if [[ $command == @(dialog|init) ]] && [ "$n" -eq 2 ] && [[ ${COMP_WORDS[n]} != -* ]]; then map=${COMP_WORDS[n]}; fi
  done
  # A blank of a layer's name stands behind "\".
  if [[ ${COMP_LINE:0:COMP_POINT} =~ --select[\ ]+(([^\ \\]|\\.)*)$ ]] && [ -n "$map" ]; then
    _halvane_selection "$map" "$word" "${BASH_REMATCH[1]}"
    return
  fi
  case $before in
  --layer) mapfile -t COMPREPLY < <([ -z "$map" ] || _halvane_names "$map" | while read -r name; do
    [[ $name == "${word//\\/}"* ]] && printf '%q\n' "$name"
  done) && return ;;
  --progress) mapfile -t COMPREPLY < <(compgen -W 'auto json never' -- "$word") && return ;;
  --item-limit | --items | --node-path | --select | --set | --processes | --shard) return ;;
  esac
  if [[ $command == help && $word != -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W 'export check preview describe init schema dialog help' -- "$word")
    return
  fi
  if [[ $command == schema && $word != -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(halvane schema 2>/dev/null | awk '{ print $1 }')" -- "$word")
    return
  fi
  if [[ $word == -* ]]; then
    local options=--help
    case $command in
    export)
      options+=' --map --allow-connections --xml --node-path --select --processor --set --report --exact-name --schema --schema-catalog --item-limit --progress --no-sync --quiet --verbose --jobs --processes --shard --resume --state'
      ;;
    check) options+=' --map --allow-connections --xml --node-path --select --processor --set --json --sarif --quiet --verbose' ;;
    preview) options+=' --map --allow-connections --xml --node-path --select --processor --set --items --explain --quiet --verbose' ;;
    describe) options+=' --html --json --allow-connections --quiet --verbose' ;;
    init) options+=' --allow-connections --layer --schema --schema-catalog --output --quiet --verbose' ;;
    dialog) options+=' --map --allow-connections --select --processor' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    return
  fi
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -f -- "$word")
}

complete -F _halvane halvane
