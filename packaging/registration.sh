# What the packages' scripts do with a CIM server: say in one line what was done, or why not, and
# never fail, whatever the server does: a package can be installed before the server, and must go
# away after it. (A part of the generated scripts; not a program.)

# $1: "install" puts the modules into the server, "remove" takes them out.
register() {
  if [ "$1" = install ]; then
    succeeded="registered with the CIM server"
    failed="not registered with a CIM server"
    advice="to try again, run 'serverprofile-register install'"
  else
    succeeded="not registered with a CIM server any more"
    failed="could not be unregistered"
    advice="if a CIM server still lists them, 'cimprovider -r -m MODULE' removes ServerProfileProviderModule and ServerObjectsProviderModule"
  fi
  # A server that hangs must not hold up the package manager for ever; what was begun is rolled back.
  patience=${SERVERPROFILE_PATIENCE:-120}
  code=0
  said=$(timeout --kill-after="$patience" "$patience" serverprofile-register "$1" 2>&1 </dev/null) || code=$?
  case $code in
    0) echo "@provider_package@: $succeeded" && return ;;
    124 | 137) reason="no answer within $patience seconds" ;;
    *) reason=$(printf '%s\n' "$said" | sed -n 's/^ *WRONG *//p; s/^serverprofile-register: //p' |
      head -n 1) ;;
  esac
  echo "@provider_package@: $failed (${reason:-it ended with $code}); $advice"
}
