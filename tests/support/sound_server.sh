#!/bin/sh
# A private sound server in the foreground, heard by nobody: sound_server.sh FOLDER
#
# It answers at unix:FOLDER/native. What is played goes into the null sink "speaker", whose monitor, "speaker.monitor",
# is what one would hear. The null sink "room" is a second one; its monitor, the default source, stands for a
# microphone that hears what is played into it. Clients find their way with
#   PULSE_SERVER=unix:FOLDER/native PULSE_COOKIE=FOLDER/cookie
# It is PulseAudio, or PipeWire if SORVANTA_SOUND_SERVER_KIND is "pipewire"; both end whole with this process.
# PulseAudio warns when root starts it, and runs.
set -e
mkdir -p "$1"
chmod 700 "$1"
rm -f "$1/native" "$1"/pipewire-0* # of a server that was killed
unset PULSE_SERVER
export HOME="$1" XDG_RUNTIME_DIR="$1" XDG_CONFIG_HOME="$1" XDG_STATE_HOME="$1"
export PULSE_RUNTIME_PATH="$1" PULSE_STATE_PATH="$1" PULSE_COOKIE="$1/cookie"
export DBUS_SESSION_BUS_ADDRESS=disabled: DBUS_SYSTEM_BUS_ADDRESS=disabled:

start_pulseaudio() {
  cat >"$1/modules" <<EOF
load-module module-null-sink sink_name=speaker rate=48000
load-module module-null-sink sink_name=room rate=48000
set-default-sink speaker
set-default-source room.monitor
load-module module-native-protocol-unix socket=$1/native auth-anonymous=1 auth-cookie=$1/cookie
EOF
  exec pulseaudio -n -F "$1/modules" --daemonize=no --use-pid-file=no --exit-idle-time=-1 --disable-shm=yes \
    --high-priority=no --realtime=no --log-target=stderr --log-level=error
}

# The daemon, the manager that decides who hears what, and the server that clients speak to, which this process
# becomes. The devices of the machine are left alone.
start_pipewire() {
  export PIPEWIRE_DEBUG=0 WIREPLUMBER_DEBUG=0
  mkdir -p "$1/wireplumber/main.lua.d" "$1/wireplumber/bluetooth.lua.d" "$1/pipewire"
  cat >"$1/wireplumber/main.lua.d/51-private.lua" <<EOF
alsa_monitor.enabled = false
v4l2_monitor.enabled = false
libcamera_monitor.enabled = false
default_access.properties["enable-flatpak-portal"] = false
EOF
  echo "bluez_monitor.enabled = false" >"$1/wireplumber/bluetooth.lua.d/51-private.lua"
  cat >"$1/wireplumber/default-nodes" <<EOF
[default-nodes]
default.configured.audio.sink=speaker
default.configured.audio.source=room
EOF
  cat >"$1/pipewire/pipewire-pulse.conf" <<EOF
context.spa-libs = { audio.convert.* = audioconvert/libspa-audioconvert support.* = support/libspa-support }
context.modules = [
  { name = libpipewire-module-protocol-native }
  { name = libpipewire-module-client-node }
  { name = libpipewire-module-adapter }
  { name = libpipewire-module-metadata }
  { name = libpipewire-module-protocol-pulse }
]
pulse.cmd = [
  { cmd = "load-module" args = "module-null-sink sink_name=speaker rate=48000" }
  { cmd = "load-module" args = "module-null-sink sink_name=room rate=48000" }
]
pulse.properties = { server.address = [ "unix:$1/native" ] }
EOF
  setpriv --pdeathsig KILL pipewire &
  while [ ! -S "$1/pipewire-0" ]; do
    sleep 0.02
  done
  setpriv --pdeathsig KILL wireplumber &
  exec pipewire-pulse
}

case ${SORVANTA_SOUND_SERVER_KIND:-pulseaudio} in
pipewire) start_pipewire "$1" ;;
*) start_pulseaudio "$1" ;;
esac
