#!/bin/sh
# Prints the arguments, one a line, with which cimhost serves the module and the sample switch:
# everything in each namespace, so that clients that look for any of them find it.
# usage: cimhost_arguments.sh SOURCE-DIRECTORY LIBRARY-DIRECTORY
set -eu
source=$1
libraries=$2

for namespace in interop root/cimv2 root/PG_InterOp; do
  for file in schema/cim_schema.mof schema/pg_server.mof schema/orvex_switch.mof \
    schema/orvex_serverprofile.mof samples/sample_switch.mof; do
    printf '%s\n' --mof "$namespace=$source/$file"
  done
done
for file in schema/pg_registration.mof schema/serverprofile_registration.mof; do
  printf '%s\n' --mof "root/PG_InterOp=$source/$file"
done
printf '%s\n' --mof-include "$source/schema" --provider-dir "$libraries" \
  --system-class ORVEX_ObjectManagerHost
