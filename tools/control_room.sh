# shellcheck shell=bash disable=SC2154
# A control room on this machine, for scripts/demo and scripts/control-room-load, which source this: a PostgreSQL server of
# its own, keepers that share its record, and modules that number their texts and repeat what nobody answers. `bin` is the
# folder of the programs. Nothing of it outlives room_end.

room=
postgres= # the folder of the server's programs, which are in nobody's path
declare -A keepers=() # process of each by its number
fleet=
room_others=() # what else is to be ended

# room_begin [SETTING=VALUE ...]: with these settings of the server.
room_begin() {
  local setting options=(-c listen_addresses=)
  room=$(mktemp -d)
  chmod 711 "$room"
  mkdir -p "$room/server" "$room/home"
  export XDG_CONFIG_HOME=$room/home XDG_DATA_HOME=$room/home XDG_CACHE_HOME=$room/home
  postgres=$(printf '%s\n' /usr/lib/postgresql/*/bin | sort -V | tail -n 1)
  as_server=()
  if [ "$(id -u)" -eq 0 ]; then # who refuses to serve root
    chown nobody "$room/server"
    as_server=(runuser -u nobody --)
  fi
  for setting in "$@"; do options+=(-c "$setting"); done
  (cd "$room/server" &&
    "${as_server[@]}" "$postgres/initdb" -D data -U administrator -A trust -E UTF8 --locale=C.UTF-8 --no-sync &&
    "${as_server[@]}" "$postgres/pg_ctl" -D data -w -l log -o "-k $room/server ${options[*]}" start) >"$room/initdb.log"
  "$postgres/createdb" -h "$room/server" -U administrator ktrconfig
  "$bin/ktrcli" record init "$(room_address administrator)" >/dev/null
  sql -c 'CREATE ROLE looker LOGIN IN ROLE ktrconfig_operator'
}

room_address() { echo "postgresql://$1@/ktrconfig?host=$room/server"; }

sql() { PGOPTIONS="-c client_min_messages=warning" "$postgres/psql" -XAtq -v ON_ERROR_STOP=1 -h "$room/server" -U administrator -d ktrconfig "$@"; }

# room_fleet COUNT SECONDS: so many modules, each with a text in so many seconds.
room_fleet() {
  "$bin/ktrcli" simulate --fleet "$1" --port 0 --every "$2" --nodes "$room/fleet.xml" --ledger "$room/ledger" \
    >"$room/fleet.log" 2>&1 &
  fleet=$!
  await 60 grep -qs '^listening' "$room/fleet.log"
  "$bin/ktrcli" record import "$(room_address administrator)" "$room/fleet.xml" >/dev/null
}

# room_keeper NUMBER: starts it, or starts it anew.
room_keeper() {
  sql -c "DO \$\$ BEGIN IF NOT EXISTS (SELECT 1 FROM pg_roles WHERE rolname = 'keeper$1') THEN
    CREATE ROLE keeper$1 LOGIN IN ROLE ktrconfig_keeper; END IF; END \$\$"
  "$bin/ktrcli" keep --record "$(room_address "keeper$1")" >>"$room/keeper$1.log" 2>&1 &
  keepers[$1]=$!
}

# The stations that a keeper has by the record.
room_share() { sql -c "SELECT count(*) FROM ktrconfig.station WHERE $(kept_by "$1")"; }
kept_by() {
  echo "keeper IN (SELECT id FROM ktrconfig.keeper WHERE leased_until > clock_timestamp()
    AND name LIKE 'ktrcli (${keepers[$1]})%')"
}
has_share() { [ "$(room_share "$1")" -eq "$2" ]; }

# await SECONDS COMMAND...: until it succeeds.
await() {
  local end=$((SECONDS + $1))
  shift
  until "$@"; do
    [ "$SECONDS" -lt "$end" ] || { echo "${0##*/}: in vain: $*" >&2; return 1; }
    sleep 0.1
  done
}

ended() { # PROCESS...: asks them to end, and waits
  local process
  for process in "$@"; do kill -TERM "$process" 2>/dev/null || true; done
  for process in "$@"; do wait "$process" 2>/dev/null || true; done
}

# Ends fleet and keepers as one does, and puts what the modules know beside what the record has, in the schema `room`.
room_count() {
  ended "$fleet"
  ended "${keepers[@]}"
  sql -v ledger="$room/ledger" >/dev/null <<'E2'
CREATE SCHEMA IF NOT EXISTS room;
CREATE TABLE room.ledger(at bigint, station text, what text, text text);
\set copy '\\copy room.ledger FROM ' :ledger
:copy
CREATE INDEX ON room.ledger(station, what, at);
ANALYZE room.ledger;
CREATE TABLE room.said AS SELECT station, text, count(*) FILTER (WHERE what = 'sent') AS sent,
  bool_or(what = 'answered') AS answered, min(at) AS at FROM room.ledger WHERE what <> 'heard' GROUP BY station, text;
CREATE TABLE room.recorded AS SELECT station.name AS station, split_part(event.text, ' --> ', 2) AS text, count(*),
  min(event.id) AS event FROM ktrconfig.event JOIN ktrconfig.station ON station.id = event.station
  WHERE event.kind IN (1, 2) GROUP BY 1, 2;
CREATE TABLE room.fate AS SELECT said.*, coalesce(recorded.count, 0) AS recorded, event
  FROM room.said LEFT JOIN room.recorded USING (station, text);
E2
}

# What room_count found, as numbers: texts, answered ones, these that the record has not, texts that it has more often than
# they were sent, texts that were sent again and stand twice, texts that nobody sent.
room_fate() {
  sql -F ' ' -c "SELECT count(*), count(*) FILTER (WHERE answered), count(*) FILTER (WHERE answered AND recorded = 0),
    count(*) FILTER (WHERE recorded > sent), count(*) FILTER (WHERE recorded > 1 AND recorded <= sent),
    (SELECT count(*) FROM room.recorded LEFT JOIN room.said USING (station, text) WHERE said.text IS NULL)
    FROM room.fate"
}

# since TIME: seconds from a value of EPOCHREALTIME to now.
since() { awk -v from="$1" -v to="$EPOCHREALTIME" 'BEGIN { printf "%.1f", to - from }'; }

# room_kill NUMBER: as a power cut does.
room_kill() {
  kill -KILL "${keepers[$1]}"
  wait "${keepers[$1]}" 2>/dev/null || true
}

# What scripts/demo shows.
show_control_room() {
  local modules=12 half=6 killed
  trap room_end EXIT
  trap 'exit 130' INT TERM
  echo "demo: a PostgreSQL server of its own, $modules modules, two keepers that share them"
  room_begin fsync=off
  room_fleet "$modules" 1
  room_keeper 1
  room_keeper 2
  await 30 has_share 1 $half
  await 30 has_share 2 $half
  "$bin/ktrcli" keep --status --record "$(room_address looker)"
  if [ -n "$window" ]; then
    cp "$bin/KTRconfig" "$bin/language.ini" "$room/"
    KTR_RECORD=$(room_address looker) "$room/KTRconfig" -operational &
  else
    "$bin/ktrcli" monitor --record "$(room_address looker)" >"$room/monitor" &
  fi
  room_others=($!)
  sleep 10
  echo "demo: keeper 2 (process ${keepers[2]}) is killed"
  killed=$EPOCHREALTIME
  room_kill 2
  await 30 has_share 1 $modules
  echo "demo: after $(since "$killed") s keeper 1 has its stations, too"
  sleep 8
  echo "demo: keeper 2 is started anew"
  room_keeper 2
  await 30 has_share 2 $half
  "$bin/ktrcli" keep --status --record "$(room_address looker)"
  if [ -n "$window" ]; then
    echo "demo: close the window for the count"
    wait "${room_others[0]}" || true
  else
    sleep 8
  fi
  room_count
  tell_fate
}

# Says what became of the texts; fails when any is missing or there too often.
tell_fate() {
  local texts answered missing doubled repeated strange
  read -r texts answered missing doubled repeated strange < <(room_fate)
  echo "${0##*/}: the modules sent $texts texts; a keeper answered $answered"
  echo "${0##*/}: answered, but not in the record: $missing; in it more often than sent: $doubled; sent by nobody: $strange"
  [ "$repeated" -eq 0 ] || echo "${0##*/}: written, but not answered before the keeper was gone, so that the module sent them again: $repeated"
  [ "$answered" -gt 0 ] && [ $((missing + doubled + strange)) -eq 0 ]
}

room_end() {
  trap - EXIT
  [ -n "$room" ] || return 0
  for process in "${keepers[@]}" "$fleet" "${room_others[@]}"; do
    [ -z "$process" ] || kill -KILL "$process" 2>/dev/null || true
  done
  wait 2>/dev/null || true
  [ ! -e "$room/server/data/postmaster.pid" ] ||
    (cd "$room/server" && "${as_server[@]}" "$postgres/pg_ctl" -D data -m immediate -w stop) >/dev/null || true
  rm -rf "$room"
}
