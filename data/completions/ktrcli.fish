# Completes for fish the commands of ktrcli, their options and actions, files, and after "get FILE" and "set FILE" the names of
# fields, as ktrcli itself tells them: to be put into /usr/share/fish/vendor_completions.d or ~/.config/fish/completions.

function __ktrcli_words
    set -l line (commandline -opc)
    set -l typed (commandline -ct)
    set -l command $line[2]
    if test (count $line) -eq 1
        $line[1] --help 2>/dev/null |
            sed -nE '/^Commands:/,/^$/s/^  ([a-z]+)( +\[?[A-Z][^ ]*)* +([a-z].*)$/\1\t\3/p'
        printf '%s\n' --help --version
    else if string match -q -- '-*' "$typed"
        $line[1] $command --help 2>/dev/null | sed -nE 's/^  (-., )?(--[a-z-]+)( <[^ ]*>)? +(.*)$/\2\t\4/p'
    else if contains -- $command get set; and test (count $line) -gt 2
        set -l behind
        test $command = set; and set behind =
        $line[1] get --names 2>/dev/null | sed "s/\$/$behind/"
    else if test (count $line) -eq 2
        $line[1] $command --help 2>/dev/null | sed -nE "s/^  $command ([a-z]+) .*/\1/p" | sort -u
    end
end

complete -c ktrcli -a '(__ktrcli_words)'
complete -c ktrcli -f -n 'test (count (commandline -opc)) -eq 1'
