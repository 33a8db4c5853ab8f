# Shows a vok::Value in gdb, with the printers of libstdc++: vok_value NAME
define vok_value
  print $arg0.storage_
end
document vok_value
Show the type and the content of the vok::Value $arg0.
end
