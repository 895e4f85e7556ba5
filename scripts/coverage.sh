#!/usr/bin/env bash
# Lines of src/ that the tests run at the baseline: prints what is left out of each file, and fails below 98 %.
#
#   scripts/coverage.sh [PERCENT]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}" "${test_packages[@]}" gcovr
cmake --preset coverage
cmake --build --preset coverage --target entry_tests internal_tests_baseline load_tests
find build/coverage -name '*.gcda' -delete
build/coverage/tests/internal_tests_baseline --gtest_brief=1
build/coverage/tests/entry_tests --gtest_brief=1
QVN_TEST_LIBRARY=build/coverage/lib/libquorvane.so build/coverage/tests/load_tests --gtest_brief=1
gcovr --root . --filter 'src/' --exclude-unreachable-branches --fail-under-line "${1:-98}" build/coverage/src
