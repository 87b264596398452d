# Sourced: compares what the outside program printed with what it has to print.

check_output() {
  local expected='010F00000000F1536512143FC6DC6D48404260E5D0225B02400000000000002940
48.8583 2.2945'
  local printed
  printed=$(${EMULATOR:-} "$@")
  if [[ $printed != "$expected" ]]; then
    printf 'expected:\n%s\nprinted:\n%s\n' "$expected" "$printed"
    return 1
  fi
}
