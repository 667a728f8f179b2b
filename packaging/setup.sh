# Steps that ./run and ./test share. Sourced by both, from the project's folder; safe to repeat, and quick when there
# is nothing to do.

say() { printf '%s\n' "== $*"; }

# fail STEP REMEDY
fail() {
  printf '\n%s\n' "Cannot go on: $1." "$2" >&2
  exit 1
}

# packages_of SECTION...: the names in those sections of the list.
packages_of() {
  awk -v wanted=" $* " '
    /^\[/ { section = substr($0, 2, length($0) - 2); next }
    /^#/ || /^$/ { next }
    index(wanted, " " section " ") { print }' packaging/debian-packages.txt
}

# is_there PACKAGE: node and npm may have come another way than from Debian.
is_there() {
  case $1 in
    nodejs) command -v node >/dev/null && return 0 ;;
    npm) command -v npm >/dev/null && return 0 ;;
  esac
  [[ " $installed_packages " == *" $1 "* ]]
}

# install_packages SECTION...
install_packages() {
  local installed_packages missing=() package
  command -v dpkg-query >/dev/null ||
    fail "installing packages" "This needs Debian 12: packaging/debian-packages.txt lists what to install elsewhere."
  installed_packages=$(dpkg-query -W -f '${db:Status-Abbrev}${Package} ' 2>/dev/null | sed 's/ii //g')
  for package in $(packages_of "$@"); do
    is_there "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  say "Installing ${#missing[@]} Debian packages: ${missing[*]}"
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null ||
      fail "installing packages" "Install these as root, then run this again: ${missing[*]}"
    as_root=(sudo)
  fi
  "${as_root[@]}" apt-get update -q >/dev/null &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -q -y --no-install-recommends "${missing[@]}" >/dev/null ||
    fail "installing packages" "See the messages above. Is there a network, room on the disk, and Debian 12's package list?"
}

# fetch_sources: the engine's sources and the icons, checked against the hashes in package-lock.json.
fetch_sources() {
  local stamp=node_modules/.fetched
  cmp -s package-lock.json "$stamp" && return 0
  say "Fetching the engine's sources and the icons from npm"
  npm ci --ignore-scripts --no-audit --no-fund --loglevel=error >/dev/null ||
    fail "fetching the npm packages" "See the messages above. Is there a network, and room for 110 MB on the disk?"
  cp package-lock.json "$stamp"
}

# build_tree FOLDER TARGETS [CMAKE_OPTION...]: configures once, or when other options are wanted, then builds the
# targets. Without options a tree that is there is taken as it is.
build_tree() {
  local folder=$1 targets=$2
  shift 2
  local remedy="See the messages above. Is there room for 3 GB on the disk? Removing $folder starts this step afresh."
  if [ ! -e "$folder/build.ninja" ] || { [ $# -gt 0 ] && [ "$*" != "$(cat "$folder/.options" 2>/dev/null)" ]; }; then
    say "Configuring $folder"
    mkdir -p "$folder" || fail "making $folder" "Is there room on the disk, and permission to write here?"
    cmake -S . -B "$folder" -G Ninja "$@" >"$folder/configure.log" 2>&1 ||
      { cat "$folder/configure.log" >&2; fail "configuring $folder" "$remedy"; }
    printf '%s' "$*" >"$folder/.options"
  fi
  # shellcheck disable=SC2086 # a list of words
  if ! ninja -C "$folder" -n $targets | grep -q 'no work to do'; then
    say "Building in $folder: $targets (the first time takes some minutes)"
  fi
  # shellcheck disable=SC2086
  ninja -C "$folder" $targets >"$folder/build.log" 2>&1 ||
    { grep -v '^\[' "$folder/build.log" >&2; fail "building in $folder" "$remedy"; }
}
