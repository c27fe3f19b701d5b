#!/usr/bin/env bash
# A private Firebird server for the test run.
#
#   fbserver.sh setup DIR DEMO_DB   fresh configuration root in DIR: its own firebird.conf (127.0.0.1
#                                   only, a free port), its own security database with SYSDBA and
#                                   every login of the demo database's USERS table, then start
#   fbserver.sh start DIR           start the server of DIR again (same port and users)
#   fbserver.sh stop DIR            stop it (no error when it is not running)
#
# DIR/server.env holds PORT and PID for the tests. Passwords: SYSDBA has "masterkey", every demo
# user his login in lower case.
set -euo pipefail

cmd=${1:?command}
dir=${2:?directory}
lib=/usr/lib/x86_64-linux-gnu/firebird/3.0
[ -d "$lib" ] || lib=$(dirname "$(find /usr/lib -path '*firebird/3.0/firebird.msg' -print -quit)")
server=/usr/sbin/firebird
isql=$(command -v isql-fb || command -v isql)

env_of() { sed -n "s/^$1=//p" "$dir/server.env" 2>/dev/null || true; }

stop() {
    local pid
    pid=$(env_of PID)
    [ -n "$pid" ] || return 0
    # Only our server: after a crash or a restart of the machine the number may be another's.
    [ "$(readlink "/proc/$pid/exe" 2>/dev/null)" = "$server" ] || return 0
    local environment
    environment=$(tr '\0' '\n' <"/proc/$pid/environ" 2>/dev/null || true)
    grep -qx "FIREBIRD=$dir" <<<"$environment" || return 0
    kill -CONT "$pid" 2>/dev/null || true
    kill "$pid" 2>/dev/null || return 0
    # The server writes its pages at every commit: when it does not end on TERM at once, KILL
    # loses nothing that was committed.
    for i in $(seq 40); do
        kill -0 "$pid" 2>/dev/null || return 0
        [ "$i" = 10 ] && kill -9 "$pid" 2>/dev/null
        sleep 0.05
    done
}

listening() { (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null; }

start() {
    local port pid
    port=$(env_of PORT)
    # The server runs in the foreground of its own process: $! is its id.
    FIREBIRD="$dir" FIREBIRD_LOCK="$dir/lock" FIREBIRD_TMP="$dir/tmp" \
        "$server" >"$dir/server.out" 2>&1 </dev/null &
    pid=$!
    printf 'PORT=%s\nPID=%s\n' "$port" "$pid" >"$dir/server.env"
    for _ in $(seq 200); do
        if listening "$port"; then return 0; fi
        kill -0 "$pid" 2>/dev/null || break
        sleep 0.05
    done
    echo "fbserver: the server did not start on port $port" >&2
    cat "$dir/server.out" >&2 || true
    return 1
}

free_port() {
    local p
    for _ in $(seq 50); do
        p=$((20000 + RANDOM % 20000))
        listening "$p" || { echo "$p"; return 0; }
    done
    return 1
}

setup() {
    local demo=${3:?demo database}
    stop
    rm -rf "$dir"
    mkdir -p "$dir/lock" "$dir/tmp"
    # The engine finds its plugins, character sets and messages under its root.
    for x in plugins lib UDF firebird.msg; do
        [ -e "$lib/$x" ] && ln -s "$lib/$x" "$dir/$x"
    done
    # The character sets' module must be a file under the root: loaded through a link, the
    # engine knows none of its character sets (WIN1251 "is not defined").
    mkdir "$dir/intl"
    cp -L "$lib/intl/libfbintl.so" "$lib/intl/fbintl.conf" "$dir/intl/"
    cp /etc/firebird/3.0/plugins.conf /etc/firebird/3.0/fbintl.conf "$dir/" 2>/dev/null ||
        cp "$lib/plugins.conf" "$dir/"
    printf 'security.db = %s/security3.fdb\n{\n\tRemoteAccess = false\n}\n' "$dir" >"$dir/databases.conf"
    cat >"$dir/firebird.conf" <<EOF
RemoteBindAddress = 127.0.0.1
ServerMode = Super
WireCrypt = Enabled
DefaultDbCachePages = 512
DummyPacketInterval = 5
EOF
    export FIREBIRD="$dir" FIREBIRD_LOCK="$dir/lock" FIREBIRD_TMP="$dir/tmp" LANG=C
    echo "create database '$dir/security3.fdb';" | "$isql" -q -user SYSDBA
    gfix -user SYSDBA -write async "$dir/security3.fdb"
    "$isql" -q -user SYSDBA -i /usr/share/firebird/3.0/security.sql "$dir/security3.fdb"
    # The demo database's logins become the server's users.
    local logins sql
    logins=$(echo "set heading off; select trim(LOGIN) from USERS where LOGIN is not null and LOGIN <> 'SYSDBA';" |
        "$isql" -q -user SYSDBA "$demo" | tr -d ' \r' | grep -v '^$' || true)
    sql="create or alter user SYSDBA password 'masterkey';"
    for u in $logins; do
        sql="$sql create or alter user $u password '$(echo "$u" | tr '[:upper:]' '[:lower:]')';"
    done
    echo "$sql commit;" | "$isql" -q -user SYSDBA security.db
    unset FIREBIRD FIREBIRD_LOCK FIREBIRD_TMP
    cp "$demo" "$dir/demo.fdb"
    # A free port; when another process takes it before the server binds it, try another.
    for _ in 1 2 3; do
        port=$(free_port)
        grep -v '^RemoteServicePort' "$dir/firebird.conf" >"$dir/firebird.conf.new"
        echo "RemoteServicePort = $port" >>"$dir/firebird.conf.new"
        mv "$dir/firebird.conf.new" "$dir/firebird.conf"
        printf 'PORT=%s\n' "$port" >"$dir/server.env"
        start && { echo "fbserver: 127.0.0.1/$port, root $dir"; return 0; }
        stop
    done
    return 1
}

case "$cmd" in
setup) setup "$@" ;;
start) start ;;
stop) stop ;;
*) echo "usage: $0 setup|start|stop DIR [DEMO_DB]" >&2; exit 2 ;;
esac
