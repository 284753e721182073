# shellcheck shell=bash
# Sourced, after lib.sh, by the scripts that test: stages whose failures are counted and end nothing.
passed=0
failed=0
skipped=0

# stage TITLE COMMAND...: runs it and tells how long it took. A failure is counted, told in outcome, and ends nothing.
stage()
{
    local title=$1 start=$SECONDS
    outcome='done'
    shift
    printf '\n== %s\n' "$title"
    if ! "$@"; then
        outcome=FAILED
        failed=$(( failed + 1 ))
    fi
    printf '== %s: %s in %d s\n' "$title" "$outcome" $(( SECONDS - start ))
}

build()
{
    local preset=$1 directory=$2
    shift 2
    configure "$preset" "$directory" -DCORVREC_WERROR=ON "$@" && cmake --build "$directory"
}

# count PATTERN FILE: the sum of the pattern's one group over the file.
count()
{
    sed -nE "s/$1/\1/p" "$2" | awk '{ sum += $1 } END { print sum + 0 }'
}

# Counts what the programs count, GoogleTest's and QtTest's; a fuzz target counts as one, and so does a program that
# fails without saying so. Fails only when there is no count.
run_tests()
{
    local directory=$1 log=$1/Testing/Temporary/LastTest.log programs told
    ctest --test-dir "$directory" --parallel "$(nproc)" --output-on-failure --no-tests=error | tee "$directory/tests.log" || true
    [[ $(< "$directory/tests.log") =~ ([0-9]+)' tests failed out of ' ]] || return 1
    programs=${BASH_REMATCH[1]}
    told=$(( $(count '^\[  FAILED  \] ([0-9]+) tests?, listed below:$' "$log") + \
             $(count '^Totals: [0-9]+ passed, ([0-9]+) failed.*' "$log") ))
    failed=$(( failed + (told > programs ? told : programs) ))
    # A test that finds its conditions missing (a user whom no file refuses itself, say) has not passed.
    skipped=$(( skipped + $(count '^\[  SKIPPED \] ([0-9]+) tests?, listed below:$' "$log") + \
                          $(count '^Totals: .* failed, ([0-9]+) skipped.*' "$log") + \
                          $(grep --count '\*\*\*Skipped ' "$directory/tests.log" || true) ))
    passed=$(( passed + $(count '^\[  PASSED  \] ([0-9]+) tests?\.$' "$log") + \
                        $(count '^Totals: ([0-9]+) passed.*' "$log") + \
                        $(awk '/ Test +#[0-9]+: fuzz_.* Passed / { ++targets } END { print targets + 0 }' \
                            "$directory/tests.log") ))
}

# build_and_test TITLE PRESET DIRECTORY [OPTION...]: programs of an earlier build prove nothing.
build_and_test()
{
    local title=$1
    shift
    stage "$title build" build "$@"
    [[ $outcome == FAILED ]] || stage "$title tests" run_tests "$2"
}

# check SENTENCE COMMAND...: what the command says is shown when it fails.
check()
{
    local sentence=$1 said
    shift
    if said=$("$@" 2>&1); then
        passed=$(( passed + 1 ))
        echo "passed: $sentence"
    else
        failed=$(( failed + 1 ))
        printf 'FAILED: %s\n%s\n' "$sentence" "$said"
    fi
}

# says EXPECTED COMMAND...: the command says exactly that, or nothing.
says()
{
    diff --unified <(printf '%s' "${1:+$1$'\n'}") <("${@:2}" 2>&1)
}

# The last line of a script that tests, and its result.
tell_counts()
{
    echo
    (( skipped == 0 )) || echo "$skipped skipped"
    echo "$passed passed, $failed failed"
    (( failed == 0 ))
}
