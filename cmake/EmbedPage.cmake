# The page of HTML reports as a source of the program: its template, with the style sheet and the script in it, and their
# hashes, so that a browser runs and applies nothing else.

# The SHA-256 of `text` in base64, as browsers want it.
function(sha256_base64 text out)
  string(SHA256 hex "${text}")
  set(digits "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
  set(base64 "")
  foreach(at RANGE 0 63 3) # 12 bits
    string(SUBSTRING "${hex}00" ${at} 3 bits)
    math(EXPR high "0x${bits} >> 6")
    math(EXPR low "0x${bits} & 63")
    string(SUBSTRING "${digits}" ${high} 1 high)
    string(SUBSTRING "${digits}" ${low} 1 low)
    string(APPEND base64 "${high}${low}")
  endforeach()
  string(REGEX REPLACE ".$" "=" base64 "${base64}") # 32 bytes end in one of padding
  set(${out} "${base64}" PARENT_SCOPE)
endfunction()

# embed_page(FOLDER SOURCE): writes SOURCE, which defines htmlPage, again whenever a file of FOLDER changes.
function(embed_page folder source)
  set(files page.html style.css script.js)
  list(TRANSFORM files PREPEND "${folder}/")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${files})
  file(READ "${folder}/page.html" page)
  file(READ "${folder}/style.css" style)
  file(READ "${folder}/script.js" script)
  sha256_base64("${style}" style_hash)
  sha256_base64("${script}" script_hash)
  string(CONFIGURE "${page}" page @ONLY)
  configure_file("${folder}/Page.cpp.in" "${source}" @ONLY)
endfunction()
