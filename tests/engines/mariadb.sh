#!/usr/bin/env bash
# A MariaDB server for tests and benchmarks: on loopback, at a free port, with a data folder of its
# own, which goes with it.
#   mariadb.sh start FOLDER DRIVER [OWNER]  starts it, for as long as the process OWNER lives (the
#                                           caller, without one); DRIVER: native or wine
#   mariadb.sh stop FOLDER
#   mariadb.sh with FOLDER CMD...           runs it with KAVIDEX_MYSQL, the server's connection string,
#                                           or with KAVIDEX_MYSQL_MISSING, why there is none
#   mariadb.sh need FOLDER CMD...           the same; without a server it says so and ends with 77
# FOLDER holds `connection`, an ODBC connection string without a database, or `missing`, the reason.
set -euo pipefail
self=$(realpath "${BASH_SOURCE[0]}")
root=$(cd "$(dirname "$self")/../.." && pwd)

program() { PATH=/usr/sbin:/usr/local/sbin:$PATH:/usr/libexec command -v "$1"; }
alive() { [ -n "${1:-}" ] && kill -0 "$1" 2>/dev/null; }
refuse() { echo "$*" | tr '\n' ' ' >"$folder/missing"; exit 0; } # one line

# By its file, since its name may not be registered.
driverOf() {
  local unpacked=$root/build/deps/odbc32 file
  case $1 in
  native)
    for file in /usr/lib/{"$(uname -m)"-linux-gnu,}/odbc/libmaodbc.so /usr/lib64/libmaodbc.so; do
      [ ! -r "$file" ] || { echo "$file"; return; }
    done
    echo 'MariaDB Unicode' ;;
  wine)
    [ "$(cat "$unpacked.state" 2>/dev/null)" = ready ] || return 1
    find "$(realpath "$unpacked")" -name libmaodbc.so ;;
  esac
}

# The account that owns the folder runs the server: root has to say so.
asOwner=()
[ "$(id -u)" != 0 ] || asOwner=(--user=root)

start() {
  local driver=$1 owner=$2 install
  stop
  mkdir -p "$folder"
  install=$(program mariadb-install-db) && program mariadbd >/dev/null ||
    refuse "MariaDB is not installed (mariadbd, mariadb-install-db)"
  driver=$(driverOf "$driver") ||
    refuse "$(sed 's/^skipped: //' "$root/build/deps/odbc32.state" 2>/dev/null || echo "no 32-bit ODBC driver: ./kavidex setup fetches it")"
  "$install" --no-defaults "${asOwner[@]}" --datadir="$folder/data" --skip-test-db \
    --auth-root-authentication-method=normal >"$folder/log" 2>&1 </dev/null ||
    refuse "mariadb-install-db failed: $(tail -n 3 "$folder/log")"
  # DbOpenConnection asks for the driver of SQL Server by its name: here MariaDB's answers to it.
  printf '[SQL Server]\nDriver=%s\n' "$driver" >"$folder/odbcinst.ini"
  setsid "$self" keep "$folder" "$driver" "$owner" >>"$folder/log" 2>&1 </dev/null &
  while alive $! && [ ! -e "$folder/connection" ]; do sleep 0.05; done
  [ -e "$folder/connection" ] || refuse "mariadbd did not come up: $(tail -n 5 "$folder/log")"
}

# The server's parent: takes it down when its owner has ended, or when told to.
keep() {
  local driver=$1 owner=$2 server=
  echo $$ >"$folder/keeper"
  trap 'kill "$server" 2>/dev/null || true; wait; rm -rf "$folder"; exit' TERM
  for _ in 1 2 3; do # the port may be taken meanwhile
    port=$(freePort)
    serve >"$folder/server.log" 2>&1 &
    server=$!
    while alive $server && alive "$owner" && ! grep -q 'ready for connections' "$folder/server.log"; do
      sleep 0.05
    done
    alive $server || { cat "$folder/server.log"; continue; }
    echo "DRIVER=$driver;SERVER=127.0.0.1;PORT=$port;UID=root;" >"$folder/connection.new"
    mv "$folder/connection.new" "$folder/connection"
    while alive $server && alive "$owner"; do sleep 0.5; done
    kill -TERM $$
  done
}

# Should its parent be killed, the kernel ends the server too. Table names go without case, as on the
# servers that run on Windows: the statements differ in it. Nothing needs to outlast a power cut: no
# write waits for the disk.
serve() {
  exec setpriv --pdeathsig KILL "$(program mariadbd)" --no-defaults "${asOwner[@]}" \
    --datadir="$folder/data" --bind-address=127.0.0.1 --port="$port" --socket=socket \
    --pid-file="$folder/pid" --lower-case-table-names=1 --max-allowed-packet=64M \
    --character-set-server=utf8mb4 --collation-server=utf8mb4_general_ci \
    --innodb-buffer-pool-size=64M --innodb-flush-log-at-trx-commit=0 --innodb-file-per-table=0 \
    --skip-innodb-doublewrite --innodb-flush-method=nosync --skip-sync-frm \
    --aria-sync-log-dir=NEVER
}

freePort() {
  local candidate
  while candidate=$((20000 + RANDOM % 12000)); (: <"/dev/tcp/127.0.0.1/$candidate") 2>/dev/null; do :; done
  echo "$candidate"
}

stop() {
  local keeper; keeper=$(cat "$folder/keeper" 2>/dev/null || true)
  # A folder that an earlier run left holds a number that may be another process by now.
  if alive "$keeper" && grep -qz "^keep$" "/proc/$keeper/cmdline"; then
    kill "$keeper"
    for _ in $(seq 200); do alive "$keeper" || break; sleep 0.05; done
    ! alive "$keeper" || kill -KILL "$keeper"
  fi
  rm -rf "$folder"
}

# run WITHOUT CMD...: WITHOUT is what happens where no server is.
run() {
  local without=$1; shift
  if [ -s "$folder/connection" ]; then
    KAVIDEX_MYSQL=$(cat "$folder/connection") ODBCSYSINI=$folder exec "$@"
  fi
  local reason; reason=$(cat "$folder/missing" 2>/dev/null || echo "no server was started")
  [ "$without" = go ] || { printf 'Skipped\n%s\n' "$reason"; exit 77; }
  KAVIDEX_MYSQL_MISSING=$reason exec "$@"
}

verb=${1:-} folder=$(realpath -m "${2:-}")
[ $# -lt 2 ] || shift 2
case $verb in
start) start "$1" "${2:-$PPID}" ;;
keep) keep "$@" ;;
stop) stop ;;
with) run go "$@" ;;
need) run skip "$@" ;;
*) sed -n '2,11p' "$self"; exit 2 ;;
esac
