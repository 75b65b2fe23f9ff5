#!/usr/bin/env bash
# How the build and ctest start a Windows program.
exec "$(dirname "$0")/wine.sh" run "$@"
