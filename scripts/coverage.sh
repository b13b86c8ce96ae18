#!/usr/bin/env bash
# Runs tests with clang's source coverage and prints which part of an area's lines and branches they reach. Fails when it
# is too little; scripts/coverage.py says what that is. Usage: scripts/coverage.sh [AREA...]
# library (the default): by its own tests. standalone, cli: by the tests of both, and the sessions of the program.
. "$(dirname "$0")/lib.sh"
scripts/setup.sh gates
folder=$PWD/build/coverage # absolute, since sessions change the folder

# covered NAME TARGET...: runs those tests and writes what they reach to NAME.json.
covered() {
  local name=$1 target objects=()
  shift
  build coverage "$@"
  rm -f "$folder/$name".*.profraw
  # %c: counts are in the file at once, since the program may end without its exit handlers. %m: one file a program.
  export LLVM_PROFILE_FILE=$folder/$name.%c%m.profraw
  for target; do
    case $target in
      *_tests)
        objects+=("-object=$folder/tests/$target")
        # The small worlds reach nothing that drawn ones do not, and take minutes without optimisation.
        "$folder/tests/$target" --gtest_brief=1 --gtest_filter=-SmallWorlds.*
        ;;
      kelwhich_program)
        objects+=("-object=$folder/cli/kelwhich")
        ctest --test-dir "$folder" -R '^program\.' -j "$(nproc)" --output-on-failure
        ;;
    esac >"$folder/tests.log" 2>&1 || {
      cat "$folder/tests.log"
      exit 1
    }
  done
  llvm-profdata-14 merge -sparse "$folder/$name".*.profraw -o "$folder/$name.profile"
  llvm-cov-14 export "${objects[@]}" -instr-profile="$folder/$name.profile" >"$folder/$name.json"
}

[ $# -gt 0 ] || set -- library
[[ " $* " != *" library "* ]] || covered library library_tests
[[ " $* " != *" standalone "* && " $* " != *" cli "* ]] ||
  covered program standalone_tests program_tests kelwhich_program kelwhich_page_files
status=0
for area; do
  export=program
  [ "$area" != library ] || export=library
  python3 scripts/coverage.py "$area" "$folder/$export.json" || status=1
done
exit $status
