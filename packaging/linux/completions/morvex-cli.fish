# Completion of morvex-cli for fish.

set -l first 'test (count (commandline -opc)) -eq 1'
set -l any '__fish_seen_subcommand_from run check filter'
set -l run '__fish_seen_subcommand_from run'
set -l check '__fish_seen_subcommand_from check'
set -l filter '__fish_seen_subcommand_from filter'

complete -c morvex-cli -n $first -f -a run -d 'make an anonymised copy'
complete -c morvex-cli -n $first -f -a check -d 'find what is left of the list'
complete -c morvex-cli -n $first -f -a filter -d 'anonymise standard input'
complete -c morvex-cli -n $first -o if -r -d 'run the settings of a file'
complete -c morvex-cli -n $first -l version -d 'show the version'
complete -c morvex-cli -n $filter -f

complete -c morvex-cli -l help -d 'show options and examples'
complete -c morvex-cli -n $any -l list -r -F -d 'the replacement list'
complete -c morvex-cli -n $any -l separator -x -d 'what parts left from right'
complete -c morvex-cli -n $any -l joker -x -d 'the wildcard character'
complete -c morvex-cli -n $any -l strict -d 'take every warning for an error'
complete -c morvex-cli -n $any -l quiet -d 'say only what is wrong or found'

complete -c morvex-cli -n $run -l from -r -F -d 'a settings file, for all that is not given'
complete -c morvex-cli -n $run -l ext -x -d 'process files with these extensions'
complete -c morvex-cli -n $run -l all -d 'process every file'
complete -c morvex-cli -n $run -l log -d 'write the run log'
complete -c morvex-cli -n $run -l yes -d 'make a missing target folder'
complete -c morvex-cli -n $run -l report -r -F -d 'write what became of every file'

complete -c morvex-cli -n $check -l list-encoding -x -a 'auto utf-8 windows-1252' -d 'how the list is read'
complete -c morvex-cli -n $check -l json -d 'write one JSON document'
