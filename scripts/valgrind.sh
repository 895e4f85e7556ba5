#!/usr/bin/env bash
# The tests of the frame room, and those that call every entry, under valgrind's memcheck: no byte without a value
# decides anything, and no block is lost.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}" "${test_packages[@]}" valgrind
cmake --preset dev -DQUORVANE_BUILD_TESTS=ON
cmake --build --preset dev --target internal_tests_baseline entry_tests

# A process that a test ends on purpose still has its blocks, so that its children are not looked at; waiting for a
# lock and a thousand loads tell nothing more here. The tests of internals have an operator new of their own, which
# valgrind is not to replace.
memcheck() {
  valgrind --quiet --error-exitcode=1 --leak-check=full --errors-for-leak-kinds=definite,indirect "$@" --gtest_brief=1
}
memcheck --soname-synonyms=somalloc=nouserintercepts build/dev/tests/internal_tests_baseline \
  --gtest_filter='*Version*:*LoadOrder*:*ErrorTextMap*:*ExitList*:*Trim*:*PixelFormats*:*CallFrame*:*Logger*:*WithoutMemory*-*DeathTest*:*Thousand*:LoggerFailure*'
memcheck build/dev/tests/entry_tests \
  --gtest_filter='GetVersion*:GetTechnoInfo*:GetBitsPerPixel*:GetErrorInfo*:*EveryEntry*'
