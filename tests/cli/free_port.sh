# For tests that start servers.

# A port on which nobody listens, as on the one after it.
free_port() {
  local port
  while port=$((20000 + RANDOM % 10000)); do
    (exec 3<> "/dev/tcp/127.0.0.1/$port") 2> /dev/null && continue
    (exec 3<> "/dev/tcp/127.0.0.1/$((port + 1))") 2> /dev/null || break
  done
  echo "$port"
}
