# Counts the cases of the engine suite in ctest's JUnit report, for each engine. Prints a line for
# each: its name, passed, failed, skipped.
/^\[ +(OK|FAILED|SKIPPED) +\] Engines\/.* \([0-9]+ ms\)/ {
  engine = $0
  sub(/^.*\] Engines\/[^\/]*\//, "", engine); sub(/[ ,(].*/, "", engine)
  if (!(engine in seen)) { seen[engine] = ++engines; names[engines] = engine }
  ++count[engine, /^\[ +OK/ ? "OK" : /^\[ +FAILED/ ? "FAILED" : "SKIPPED"]
}
END {
  for (i = 1; i <= engines; ++i)
    printf "engine %-16s %3d passed, %d failed, %d skipped\n", names[i], count[names[i], "OK"],
           count[names[i], "FAILED"], count[names[i], "SKIPPED"]
}
