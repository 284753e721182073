# shellcheck shell=bash
# Sourced after lib.sh by the scripts that test: stages and checks whose failures are counted and do not end the script.
passed=0
failed=0
skipped=0

# stage TITLE COMMAND...: runs the command and prints how long it took. A failure is counted and sets outcome to FAILED.
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
    mkdir --parents "$directory"
    cmake --preset "$preset" -B "$directory" -DBUILD_TESTING=ON -DCORVREC_WERROR=ON "$@" > "$directory/configure.log" ||
        { cat "$directory/configure.log"; return 1; }
    cmake --build "$directory"
}

# run_tests DIRECTORY [CTEST OPTION...]: runs and counts the tests that ctest knows. A test whose conditions are not met (it
# may need a virtual screen) is skipped. Fails only if ctest writes no counts.
run_tests()
{
    local directory=$1 report=$PWD/$1/tests.xml run failures notRun skips
    shift
    rm --force "$report"
    ctest --test-dir "$directory" --parallel "$(nproc)" --output-on-failure --no-tests=error --output-junit "$report" \
        "$@" || true
    run=$(junit_count tests "$report") && failures=$(junit_count failures "$report") &&
        notRun=$(junit_count skipped "$report") || return 1
    # A test that ctest could not start, because its program is missing for example, is skipped for ctest, but failed here.
    skips=$(grep --count '<skipped message="SKIP_RETURN_CODE=' "$report" || true)
    failures=$(( failures + notRun - skips ))
    failed=$(( failed + failures ))
    skipped=$(( skipped + skips ))
    passed=$(( passed + run - failures - skips ))
}

# junit_count NAME FILE: the number in this attribute of the report's first element, <testsuite>.
junit_count()
{
    [[ $(sed '/<testcase/,$d' "$2") =~ $1=\"([0-9]+)\" ]] && echo "${BASH_REMATCH[1]}"
}

# build_and_test TITLE PRESET DIRECTORY [OPTION...]: runs the tests only after a successful build.
build_and_test()
{
    local title=$1
    shift
    stage "$title build" build "$@"
    [[ $outcome == FAILED ]] || stage "$title tests" run_tests "$2"
}

# check SENTENCE COMMAND...: a test; prints the command's output if it fails.
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

# says EXPECTED COMMAND...: whether the command's output is EXPECTED; an empty one means no output.
says()
{
    diff --unified <(printf '%s' "${1:+$1$'\n'}") <("${@:2}" 2>&1)
}

# The last line of a script that tests, and its exit status.
print_counts()
{
    echo
    (( skipped == 0 )) || echo "$skipped skipped"
    echo "$passed passed, $failed failed"
    (( failed == 0 ))
}
