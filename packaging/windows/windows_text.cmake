# write_windows_text(SOURCE FILE): the text with its variables replaced, as every Windows editor shows it: UTF-8 with a byte order
# mark, lines that end with CR LF.
function(write_windows_text source file)
  file(READ "${source}" text)
  string(CONFIGURE "${text}" text @ONLY)
  string(REPLACE "\n" "\r\n" text "${text}")
  string(ASCII 239 187 191 mark)
  file(WRITE "${file}" "${mark}${text}")
endfunction()
