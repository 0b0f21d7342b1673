#!/usr/bin/env python3
"""write_command_docs.py VELMARA FOLDER: the manual page and the completions of three shells.

All of it comes from what `velmara --help` and its commands' --help say, so that there is one place
where options are described.
"""

import os
import re
import subprocess
import sys


def help_of(program, *words):
    return subprocess.run([program, *words, "--help"], capture_output=True, text=True,
                          check=True).stdout


def parse(text):
    """The description, [(names, value, choices, what it does)] and the footer of a help text."""
    description = text.split("\nUsage:")[0].strip()
    options = []
    body = text.split("\nOptions:\n")[1] if "\nOptions:\n" in text else ""
    listed, _, footer = body.partition("\n\n")
    for entry in re.split(r"\n(?=  -)", listed):
        match = re.match(r" *(-[\w,-]+)( \w+\S*)?(.*)", entry, re.S)
        if not match:
            continue
        value = (match.group(2) or "").strip()
        if value in ("Excludes:", "Needs:") or value not in ("", "TEXT", "INT") and ":" not in value:
            value = ""
        choices = re.search(r"TEXT:\{([^}]*)\}", entry)
        words = re.split(r"\n *| {2,}", entry.strip())
        options.append((match.group(1).split(","), bool(value),
                        choices.group(1).split(",") if choices else [], words[-1]))
    return description, options, footer.strip()


def roff(text):
    return text.replace("\\", "\\e").replace("-", "\\-").replace("\n.", "\n\\&.").replace("'", "\\(aq")


def manual(top, commands):
    lines = ['.TH VELMARA 1 "" "Velmara" "User Commands"', ".SH NAME",
             "velmara \\- remove noise from photographs", ".SH SYNOPSIS",
             ".B velmara", "[\\fB\\-\\-new\\-window\\fR] [\\fIPHOTO\\fR...]", ".br"]
    for name, (_, _, _) in commands.items():
        lines += [f".B velmara {name}", "[\\fIOPTIONS\\fR]"
                  + (" \\fIINPUT\\fR..." if name in ("denoise", "info") else ""), ".br"]
    lines += [".SH DESCRIPTION", roff(top[0])]
    for name, (description, options, footer) in commands.items():
        lines += [f".SH {name.upper()}", roff(description)]
        for names, has_value, choices, text in options:
            value = " \\fI" + ("|".join(choices) if choices else "VALUE") + "\\fR" if has_value else ""
            lines += [".TP", ", ".join(f"\\fB{roff(n)}\\fR" for n in names) + value, roff(text)]
        if footer:
            lines += [".PP", ".nf", roff(footer), ".fi"]
    lines += [".SH FILES", ".TP", "\\fI~/Library/Logs/Velmara.log\\fR", "The log.",
              ".SH ENVIRONMENT", ".TP", "\\fBVELMARA_LOG\\fR",
              "Set, the commands write their log to standard error.",
              ".TP", "\\fBDO_NOT_TRACK\\fR", "1 sends no report of a launch."]
    return "\n".join(lines) + "\n"


def bash(commands):
    cases = []
    for name, (_, options, _) in commands.items():
        words = " ".join(n for names, _, _, _ in options for n in names)
        chosen = "".join(f'      {"|".join(names)}) COMPREPLY=($(compgen -W "{" ".join(choices)}" '
                         f'-- "$word")); return ;;\n'
                         for names, _, choices, _ in options if choices)
        previous = f"    case $previous in\n{chosen}    esac\n" if chosen else ""
        cases.append(f'  {name})\n{previous}    [[ $word == -* ]] && '
                     f'COMPREPLY=($(compgen -W "{words}" -- "$word"))\n    ;;\n')
    return (f'_velmara() {{\n  local word=${{COMP_WORDS[COMP_CWORD]}} '
            f'previous=${{COMP_WORDS[COMP_CWORD-1]}}\n'
            f'  COMPREPLY=()\n  case ${{COMP_WORDS[1]}} in\n{"".join(cases)}  esac\n'
            f'  if [[ $COMP_CWORD -eq 1 ]]; then\n    COMPREPLY=($(compgen -W '
            f'"{" ".join(commands)} --help --new-window --version" -- "$word"))\n  fi\n}}\n'
            f'complete -o default -o bashdefault -F _velmara velmara\n')


def quoted(text):
    return text.replace("'", "").replace("[", "(").replace("]", ")").replace(":", "")


def zsh(commands):
    described = " ".join(f"'{name}:{quoted(d[0])}'" for name, d in commands.items())
    cases = []
    for name, (_, options, _) in commands.items():
        words = []
        for names, has_value, choices, text in options:
            value = f":value:({' '.join(choices)})" if choices else ":value:_files" if has_value else ""
            words += [f"'{n}[{quoted(text)}]{value}'" for n in names]
        cases.append(f"    {name}) _arguments {' '.join(words)} '*:photo:_files' ;;\n")
    return (f"#compdef velmara\nlocal -a commands=({described})\n"
            f"if (( CURRENT == 2 )); then\n  _describe command commands\n  _files\nelse\n"
            f"  local command=$words[2]\n  shift words\n  (( CURRENT-- ))\n  case $command in\n"
            f"{''.join(cases)}  esac\nfi\n")


def fish(commands):
    lines = []
    for name, (description, options, _) in commands.items():
        lines.append(f"complete -c velmara -n __fish_use_subcommand -a {name} -d '{quoted(description)}'")
        for names, has_value, choices, text in options:
            flags = " ".join(f"-l {n[2:]}" if n.startswith("--") else f"-s {n[1:]}" for n in names)
            value = f" -x -a '{' '.join(choices)}'" if choices else " -r" if has_value else ""
            lines.append(f"complete -c velmara -n '__fish_seen_subcommand_from {name}' "
                         f"{flags}{value} -d '{quoted(text)}'")
    return "\n".join(lines) + "\n"


def main():
    program, folder = sys.argv[1:]
    top_text = help_of(program)
    names = re.findall(r"^  (\w+) ", top_text.split("\nSubcommands:\n")[1], re.M)
    commands = {name: parse(help_of(program, name)) for name in names}
    os.makedirs(folder, exist_ok=True)
    for file, text in (("velmara.1", manual(parse(top_text), commands)),
                       ("velmara.bash", bash(commands)), ("_velmara", zsh(commands)),
                       ("velmara.fish", fish(commands))):
        with open(os.path.join(folder, file), "w", encoding="utf-8") as out:
            out.write(text)


if __name__ == "__main__":
    main()
