#!/usr/bin/env bash
# check_hardening.sh PROGRAM: fails if a built program lacks what keeps a fault from being made use of
# (cmake/compiler.cmake), and says what it lacks.
set -euo pipefail

program=$1
faults=0
say() { # say yes|no WHAT
  if [ "$1" = yes ]; then
    printf '  yes  %s\n' "$2"
  else
    printf '  NO   %s\n' "$2"
    faults=$((faults + 1))
  fi
}
has() { # has TEXT PATTERN WHAT
  if grep -qE -- "$2" <<< "$1"; then say yes "$3"; else say no "$3"; fi
}
lacks() { # lacks TEXT PATTERN WHAT
  if grep -qE -- "$2" <<< "$1"; then say no "$3"; else say yes "$3"; fi
}

headers=$(readelf --wide --file-header --program-headers "$program")
dynamic=$(readelf --wide --dynamic "$program")
symbols=$(readelf --wide --dyn-syms "$program")

echo "$program"
has "$dynamic" 'FLAGS_1.*PIE' "it is loaded at any address (PIE)"
has "$headers" GNU_RELRO "its tables of addresses are read-only (RELRO)"
has "$dynamic" 'BIND_NOW|FLAGS_1.*NOW' "all of them, as nothing is bound later (BIND_NOW)"
has "$headers" GNU_STACK "its stack says what it is"
lacks "$headers" 'GNU_STACK.* R?WE ' "and is not executable"
lacks "$headers" 'LOAD.* RWE ' "no part is writable and executable"
has "$symbols" __stack_chk_fail "it looks after its stack (__stack_chk_fail)"
has "$symbols" '__(memcpy|memmove|memset|snprintf|vsnprintf|read)_chk' \
  "it measures what is copied (_FORTIFY_SOURCE)"
lacks "$dynamic" TEXTREL "its code is not changed when it is loaded (no TEXTREL)"
lacks "$dynamic" 'RPATH|RUNPATH' "it names no folder for its libraries (no RPATH)"
if grep -q X86-64 <<< "$headers"; then
  # Counted, as the note in the headers says nothing: the start files of Debian's C library have
  # none, so that the linker leaves it out of every program. Those files bring a few marks along.
  marks=$(objdump --disassemble --no-show-raw-insn "$program" | grep -c endbr64 || true)
  enough=no
  if [ "$marks" -ge 500 ]; then enough=yes; fi
  say "$enough" "what is called by its address begins with a mark (-fcf-protection): $marks"
fi
exit $((faults > 0))
