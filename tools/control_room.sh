# shellcheck shell=bash disable=SC2154
# A control room on this machine, for scripts/demo and scripts/control-room-load, which source this: a PostgreSQL server of
# its own, keepers that share its record, and modules that number their texts and repeat what nobody answers. `bin` is the
# folder of the programs. Nothing of it outlives room_end.

room=
postgres= # the folder of the server's programs, which are in nobody's path
declare -A keepers=() # process of each by its number
fleet=
room_others=() # what else is to be ended
room_broker=   # the port of a broker, where there is one
room_hosts=    # begins the names of network namespaces, where fleet and keepers have one each

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

# room_apart KEEPERS: from here on the fleet and each of so many keepers are hosts of their own, with all ports of one: two
# that had half of the stations each could not have all of them on one. Needs root; says no where that cannot be had.
room_apart() {
  local keeper field=ktr$$-field
  [ "$(id -u)" -eq 0 ] && ip netns add "$field" 2>/dev/null || return 1
  room_hosts=ktr$$
  ip -n "$field" link set lo up
  ip -n "$field" route add local 10.77.0.0/16 dev lo # any of its addresses is the fleet's
  for keeper in $(seq "$1"); do
    ip netns add "ktr$$-keeper$keeper"
    ip link add "ktr$$a$keeper" netns "$field" type veth peer name line netns "ktr$$-keeper$keeper"
    ip -n "$field" addr add "10.78.$keeper.1/24" dev "ktr$$a$keeper"
    ip -n "$field" link set "ktr$$a$keeper" up
    ip -n "ktr$$-keeper$keeper" addr add "10.78.$keeper.2/24" dev line
    ip -n "ktr$$-keeper$keeper" link set line up
    ip -n "ktr$$-keeper$keeper" link set lo up
    ip -n "ktr$$-keeper$keeper" route add 10.77.0.0/16 via "10.78.$keeper.1"
  done
}

# room_at HOST PROGRAM...: becomes the program, where hosts are apart on the one of this name.
room_at() {
  local host=$1
  shift
  [ -z "$room_hosts" ] || exec ip netns exec "$room_hosts-$host" "$@"
  exec "$@"
}

# room_fleet COUNT SECONDS: so many modules, each with a text in so many seconds.
room_fleet() {
  room_at field "$bin/ktrcli" simulate --fleet "$1" ${room_hosts:+--network 10.77} --port 0 --every "$2" \
    --nodes "$room/fleet.xml" --ledger "$room/ledger" >"$room/fleet.log" 2>&1 &
  fleet=$!
  await 60 grep -qs '^listening' "$room/fleet.log"
  "$bin/ktrcli" record import "$(room_address administrator)" "$room/fleet.xml" >/dev/null
}

# A broker, and somebody who writes down what events the keepers that are started later publish there.
room_broker() {
  local try process
  for try in 1 2 3 4 5; do # a port may be somebody's
    room_broker=$((20000 + RANDOM % 10000))
    printf 'listener %s 127.0.0.1\nallow_anonymous true\nuser root\n' "$room_broker" >"$room/broker.conf"
    PATH=$PATH:/usr/sbin mosquitto -c "$room/broker.conf" >>"$room/broker.log" 2>&1 &
    process=$!
    await 5 broker_answers "$process" && break
    [ "$try" -lt 5 ] || return 1
  done
  room_others+=("$process")
  mosquitto_sub -p "$room_broker" -q 1 -t ktrconfig/events -t 'ktrconfig/stations/+/events' >"$room/published" &
  room_others+=($!)
}
broker_answers() { kill -0 "$1" 2>/dev/null && mosquitto_pub -p "$room_broker" -t probe -n 2>/dev/null; }
broker_has() { # EVENT: it or a later one was published
  [ "$(sed -n '$s/.*"number":\([0-9]*\).*/\1/p' "$room/published")" -ge "$1" ] 2>/dev/null
}

# room_keeper NUMBER: starts it, or starts it anew.
room_keeper() {
  sql -c "DO \$\$ BEGIN IF NOT EXISTS (SELECT 1 FROM pg_roles WHERE rolname = 'keeper$1') THEN
    CREATE ROLE keeper$1 LOGIN IN ROLE ktrconfig_keeper; END IF; END \$\$"
  room_at "keeper$1" "$bin/ktrcli" keep --record "$(room_address "keeper$1")" \
    ${room_broker:+--forward "mqtt://127.0.0.1:$room_broker"} >>"$room/keeper$1.log" 2>&1 &
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
  [ -z "$room_broker" ] || await 20 broker_has "$(sql -c 'SELECT max(id) FROM ktrconfig.event')" || true
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
  echo "demo: a PostgreSQL server and a broker of its own, $modules modules, two keepers that share them"
  room_begin fsync=off
  room_broker
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
  room_others+=($!)
  sleep 10
  echo "demo: keeper 1 (process ${keepers[1]}) is killed"
  killed=$EPOCHREALTIME
  room_kill 1
  await 30 has_share 2 $modules
  echo "demo: after $(since "$killed") s keeper 2 has its stations, too"
  sleep 8
  echo "demo: keeper 1 is started anew"
  room_keeper 1
  await 30 has_share 1 $half
  "$bin/ktrcli" keep --status --record "$(room_address looker)"
  if [ -n "$window" ]; then
    echo "demo: close the window for the count"
    wait "${room_others[-1]}" || true
  else
    sleep 8
  fi
  room_count
  tell_fate
}

# Says what became of the texts; fails when any is missing or there too often.
tell_fate() {
  local texts answered missing doubled repeated strange told
  read -r texts answered missing doubled repeated strange < <(room_fate)
  told=0
  if [ -n "$room_broker" ]; then
    sed 's/.*"number":\([0-9]*\).*/\1/' "$room/published" >"$room/numbers"
    sql -v numbers="$room/numbers" <<'E2'
CREATE TABLE room.published(event bigint);
\set copy '\\copy room.published FROM ' :numbers
:copy
E2
    # A broker gets what happens from its first keeper on.
    told=$(sql -c "SELECT count(*) FROM room.fate WHERE event >= coalesce((SELECT min(event) FROM room.published), 0)
      AND event NOT IN (SELECT event FROM room.published)")
    echo "${0##*/}: the broker got $(sort -u "$room/numbers" | wc -l) events; of the recorded texts it has not: $told"
  fi
  echo "${0##*/}: the modules sent $texts texts; a keeper answered $answered"
  echo "${0##*/}: answered, but not in the record: $missing; in it more often than sent: $doubled; sent by nobody: $strange"
  [ "$repeated" -eq 0 ] || echo "${0##*/}: written, but not answered before the keeper was gone, so that the module sent them again: $repeated"
  [ "$answered" -gt 0 ] && [ $((missing + doubled + strange + told)) -eq 0 ]
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
  if [ -n "$room_hosts" ]; then # their lines go with them
    ip netns list | awk -v own="$room_hosts-" 'index($1, own) == 1 { print $1 }' | xargs -r -n 1 ip netns delete
  fi
}
