"""What the program's help says, asked from the program itself."""

import os
import re
import subprocess

PROGRAM = os.environ['TRELVO_PROGRAM']


def help_of(*command):
    return subprocess.run([PROGRAM, *command, '--help'], check=True, capture_output=True,
                          text=True).stdout


def section(text, title):
    """The indented lines below a heading of help."""
    found = re.search(rf'^{title}:\n((?:  .*\n)+)', text, re.MULTILINE)
    return found.group(1).splitlines() if found else []


def subcommands(*command):
    """The names of the commands below one."""
    return [line.split()[0] for line in section(help_of(*command), 'Subcommands')
            if re.match(r'  \S', line)]


def all_commands():
    """Every command that can be called, as a tuple of words."""
    leaves = []
    for name in subcommands():
        below = subcommands(name)
        leaves += [(name, each) for each in below] or [(name,)]
    return leaves


def options(*command):
    """All names of a command's options."""
    names = []
    for line in section(help_of(*command), 'Options'):
        if re.match(r'  -', line):
            names += re.findall(r'(?<![\w-])--?[a-z][a-z-]*', line.split('   ')[0])
    return names


def examples(*command):
    """The lines of a shell that help gives as examples, without the remarks behind them."""
    return [line.strip().split('   ')[0] for line in section(help_of(*command), 'Examples')]
