#!/bin/bash
# Shows, with wbemcli, what a client of the Server profile sees, and says where an answer is wrong.
# usage: walk.sh HOST:PORT
set -euo pipefail

server=${1:?usage: walk.sh HOST:PORT}
wrong=0

# Asks in both namespaces, shows the answer of the first, and expects every further argument as a
# text in each answer.
show() { # title, class, expected texts
  local title=$1 class=$2 namespace answer
  shift 2
  printf '\n== %s (wbemcli ei -nl http://%s/root/cimv2:%s)\n' "$title" "$server" "$class"
  for namespace in root/cimv2 root/PG_InterOp; do
    if ! answer=$(wbemcli ei -nl "http://$server/$namespace:$class" 2>&1); then
      echo "WRONG: no answer for $class in $namespace: $answer"
      wrong=1
      continue
    fi
    [ "$namespace" = root/cimv2 ] && echo "$answer"
    for expected in "$@"; do
      if ! grep -qF -- "$expected" <<<"$answer"; then
        echo "WRONG: no '$expected' among the answers for $class in $namespace"
        wrong=1
      fi
    done
  done
}

show "registered profiles" CIM_RegisteredProfile \
  'RegisteredName="Fabric"' 'RegisteredName="Switch"' 'RegisteredName="Server"'
show "registered subprofiles" CIM_RegisteredSubProfile \
  'RegisteredName="Zone Control"' \
  'RegisteredName="Enhanced Zoning and Enhanced Zoning Control"' 'RegisteredName="Blades"'
show "host of the object manager" ORVEX_ObjectManagerHost \
  'CreationClassName="ORVEX_ObjectManagerHost"' 'OperationalStatus=2' "Name=\"$(hostname)"
show "software identity of the firmware" ORVEX_SoftwareIdentity \
  'Name="Kelmar"' 'Manufacturer="Orvex Systems"' 'VersionString="3.0"' 'Classifications=10'

if [ "$wrong" -ne 0 ]; then
  printf '\nThe walk met wrong answers.\n'
else
  printf '\nEvery answer was right.\n'
fi
exit "$wrong"
