# For .ci/run and nightly.sh, which read this file: runs gates one after the other, whatever becomes of each.
passed=0
failed=0

# gate NAME COMMAND...
gate() {
  local name=$1
  shift
  local begin=$SECONDS
  echo "=== $name"
  if "$@"; then
    passed=$((passed + 1))
    echo "=== $name: passed ($((SECONDS - begin)) s)"
  else
    failed=$((failed + 1))
    echo "=== $name: FAILED ($((SECONDS - begin)) s)"
  fi
}

# The line at the end; whether all passed.
tell_gates() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ]
}
