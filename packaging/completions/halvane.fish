# Completion of fish for halvane: subcommands, options, files, and the layers and fields of the map on the line.

function __halvane_map
    set -l words (commandline -opc)
    for n in (seq 2 (count $words))
        if string match -q -- '--map=*' "$words[$n]"
            string replace -- --map= '' "$words[$n]"
            return
        end
        if test "$words[$n]" = --map; and set -q words[(math $n + 1)]
            echo $words[(math $n + 1)]
            return
        end
    end
    if test (count $words) -ge 3; and contains -- "$words[2]" dialog init
        echo $words[3]
    end
end

function __halvane_layers
    __halvane_selections | string match -r '.*(?==\tlayer$)'
end

# The layers of the map, each with its fields.
function __halvane_selections
    set -l map (__halvane_map)
    test -n "$map"; or return
    halvane describe $map 2>/dev/null | awk '
      /^ *(LAYER|MEMBER|TABLE) / {
        name = ""; fields = 0
        if (!/: feature layer$/) next
        name = $0; sub(/^ *(LAYER|MEMBER) /, "", name); sub(/: feature layer$/, "", name)
        if (told[name]++) name = ""; else print name "=\tlayer"
        next
      }
      name != "" && /^ *Fields *$/ { match($0, /[^ ]/); fields = RSTART + 2; getline; next }
      fields && match($0, /[^ ]/) && RSTART == fields { sub(/^ */, ""); sub(/  .*/, ""); print name "=" $0 "\tfield"; next }
      { fields = 0 }'
end

complete -c halvane -n __fish_use_subcommand -f -a export -d 'Write the document that a control file prescribes'
complete -c halvane -n __fish_use_subcommand -f -a check -d 'Tell what is wrong with a control file'
complete -c halvane -n __fish_use_subcommand -f -a preview -d 'Show the beginning of the document'
complete -c halvane -n __fish_use_subcommand -f -a describe -d 'Tell what a control file could name in a map'
complete -c halvane -n __fish_use_subcommand -f -a init -d 'Make a control file to begin with'
complete -c halvane -n __fish_use_subcommand -f -a schema -d 'Print a schema of what is read or written'
complete -c halvane -n __fish_use_subcommand -f -a dialog -d 'Open the window that exports'
complete -c halvane -n __fish_use_subcommand -f -a help -d 'Explain a subcommand'
complete -c halvane -n __fish_use_subcommand -s V -l version -d 'The version'
complete -c halvane -s h -l help -d 'What it takes'
complete -c halvane -n '__fish_seen_subcommand_from export check preview dialog' -l map -r -d 'A map document, dataset or folder'
complete -c halvane -n '__fish_seen_subcommand_from export check preview' -l xml -r -d 'A document of tags'
complete -c halvane -n '__fish_seen_subcommand_from export check preview' -l node-path -x -d 'The path into the document of tags'
complete -c halvane -n '__fish_seen_subcommand_from export check preview' -l set -x -d 'NAME=VALUE'
complete -c halvane -n '__fish_seen_subcommand_from export check preview describe init dialog' -l allow-connections -d 'Servers of a QGIS project'
complete -c halvane -n '__fish_seen_subcommand_from export' -l report -r -d 'Write what happened as JSON'
complete -c halvane -n '__fish_seen_subcommand_from export' -l exact-name -d 'OUTPUT as it stands'
complete -c halvane -n '__fish_seen_subcommand_from export init' -l schema -r -d 'Validate the document by an XML Schema'
complete -c halvane -n '__fish_seen_subcommand_from export init' -l schema-catalog -r -d 'Local files for addresses of the schema'
complete -c halvane -n '__fish_seen_subcommand_from export' -l item-limit -x -d 'The most items of a repeated node'
complete -c halvane -n '__fish_seen_subcommand_from export' -l progress -x -a 'auto json never' -d 'A progress line'
complete -c halvane -n '__fish_seen_subcommand_from export' -l jobs -r -d 'Many exports: a CSV file or JSON Lines'
complete -c halvane -n '__fish_seen_subcommand_from export' -l processes -x -d 'So many exports at a time'
complete -c halvane -n '__fish_seen_subcommand_from export' -l shard -x -d 'A part of the list: I/N'
complete -c halvane -n '__fish_seen_subcommand_from export' -l resume -d 'Skip what is done and unchanged'
complete -c halvane -n '__fish_seen_subcommand_from export' -l state -r -d 'Where it is kept what is done'
complete -c halvane -n '__fish_seen_subcommand_from export' -l no-sync -d 'Do not wait for the disk'
complete -c halvane -n '__fish_seen_subcommand_from export check preview describe init' -s q -l quiet -d 'Failures alone'
complete -c halvane -n '__fish_seen_subcommand_from export check preview describe init' -l verbose -d 'What was read, and how long it took'
complete -c halvane -n '__fish_seen_subcommand_from help' -f -a 'export check preview describe init schema dialog help'
complete -c halvane -n '__fish_seen_subcommand_from export check preview dialog' -l select -x -a '(__halvane_selections)' -d 'Select features'
complete -c halvane -n '__fish_seen_subcommand_from export check preview dialog' -l processor -r -d 'A library of external processors'
complete -c halvane -n '__fish_seen_subcommand_from schema' -f -a "(halvane schema 2>/dev/null | awk '{ print \$1 }')"
complete -c halvane -n '__fish_seen_subcommand_from check describe' -l json -d 'For programs'
complete -c halvane -n '__fish_seen_subcommand_from check' -l sarif -d 'SARIF 2.1.0'
complete -c halvane -n '__fish_seen_subcommand_from preview' -s n -l items -x -d 'How many items'
complete -c halvane -n '__fish_seen_subcommand_from preview' -l explain -d 'Where values come from'
complete -c halvane -n '__fish_seen_subcommand_from init' -l layer -x -a '(__halvane_layers)' -d 'A layer or table'
complete -c halvane -n '__fish_seen_subcommand_from init' -s o -l output -r -d 'Where to write it'
complete -c halvane -n '__fish_seen_subcommand_from describe' -l html -r -d 'Write a page of HTML'
