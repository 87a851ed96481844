#!/bin/bash
# Puts the library of the Java client (tests/clients/java/pom.xml) into build/java, from Maven Central,
# and does nothing where it is. Ends with 1, and says why, where it cannot be had.
# usage: java_client.sh
set -euo pipefail
cd "$(dirname "$0")/.."
place=build/java
library=$place/wbem-java.jar
# Another version in the pom is fetched anew.
if [ -f $library ] && [ $library -nt tests/clients/java/pom.xml ]; then exit 0; fi

mkdir -p $place
if ! mvn --quiet --batch-mode -Dstyle.color=never --file tests/clients/java/pom.xml "-Dmaven.repo.local=$PWD/$place/repository" \
  "-DoutputDirectory=$PWD/$place" dependency:copy-dependencies >$place/maven.log 2>&1 </dev/null; then
  echo "java_client: no library from Maven Central: $(grep -m 1 ERROR $place/maven.log || tail -n 1 $place/maven.log)" >&2
  exit 1
fi
touch $library
