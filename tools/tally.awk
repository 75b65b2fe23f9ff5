# Counts the tests in ctest's JUnit report. A program that ran many tests in one go counts each of
# them, by its own closing lines. Prints: passed failed skipped.
function flush_case() {
  if (!inside) return
  if (ran + refused + left == 0) {
    if (status == "run") ran = 1
    else if (skipping) left = 1
    else refused = 1
  } else if (status == "fail" && refused == 0) refused = 1
  passed += ran; failed += refused; skipped += left
  inside = 0
}
/<testcase / {
  flush_case()
  inside = 1; ran = refused = left = skipping = 0
  status = $0; sub(/.* status="/, "", status); sub(/".*/, "", status)
}
/<skipped/ { skipping = 1 }
/\[  PASSED  \] [0-9]+ tests?\./ { ran = $0; sub(/.*PASSED  \] /, "", ran); ran += 0 }
/\[  FAILED  \] [0-9]+ tests?, listed below/ { refused = $0; sub(/.*FAILED  \] /, "", refused); refused += 0 }
/\[  SKIPPED \] [0-9]+ tests?, listed below/ { left = $0; sub(/.*SKIPPED \] /, "", left); left += 0 }
END { flush_case(); print passed + 0, failed + 0, skipped + 0 }
