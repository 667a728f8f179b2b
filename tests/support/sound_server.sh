#!/bin/sh
# A private sound server in the foreground, heard by nobody: sound_server.sh FOLDER
#
# It answers at unix:FOLDER/native. What is played goes into the null sink "speaker", whose monitor, "speaker.monitor",
# is what one would hear. The null sink "room" is a second one; its monitor, the default source, stands for a
# microphone that hears what is played into it. Clients find their way with
#   PULSE_SERVER=unix:FOLDER/native PULSE_COOKIE=FOLDER/cookie
# PulseAudio warns when root starts it, and runs.
set -e
mkdir -p "$1"
chmod 700 "$1"
rm -f "$1/native" # of a server that was killed
unset PULSE_SERVER
export HOME="$1" XDG_RUNTIME_DIR="$1" XDG_CONFIG_HOME="$1" PULSE_RUNTIME_PATH="$1" PULSE_STATE_PATH="$1"
export PULSE_COOKIE="$1/cookie" DBUS_SESSION_BUS_ADDRESS=disabled: DBUS_SYSTEM_BUS_ADDRESS=disabled:
cat >"$1/modules" <<EOF
load-module module-null-sink sink_name=speaker rate=48000
load-module module-null-sink sink_name=room rate=48000
set-default-sink speaker
set-default-source room.monitor
load-module module-native-protocol-unix socket=$1/native auth-anonymous=1 auth-cookie=$1/cookie
EOF
exec pulseaudio -n -F "$1/modules" --daemonize=no --use-pid-file=no --exit-idle-time=-1 --disable-shm=yes \
  --high-priority=no --realtime=no --log-target=stderr --log-level=error
