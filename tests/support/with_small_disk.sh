#!/bin/sh
# Runs a program that finds a disk of one megabyte at SORVANTA_SMALL_DISK. The disk exists for this program alone and
# goes with it; no rights are needed where users may have namespaces of their own.
set -u

disk=$(mktemp -d) || exit 1
trap 'rmdir "$disk"' EXIT

if ! unshare --map-root-user --mount true; then
    echo "A full disk cannot be tried on this machine: it does not allow users a namespace of their own." >&2
    exit 1
fi

SORVANTA_SMALL_DISK=$disk unshare --map-root-user --mount sh -c '
    if ! mount -t tmpfs -o size=1m,mode=0700 small-disk "$SORVANTA_SMALL_DISK"; then
        echo "A full disk cannot be tried on this machine: a small one could not be mounted." >&2
        exit 1
    fi
    exec "$@"' sh "$@"
