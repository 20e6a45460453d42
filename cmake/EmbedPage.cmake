# zobgp_embed_page(folder out): makes the source file `out` of folder/page.html, which has the style
# sheet page.css and the script page.js in it, and the hashes by which a browser lets these in and no
# others.

function(zobgp_sha256_base64 text out)
  set(digits ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
  string(SHA256 hex "${text}")
  set(base64)
  foreach(at RANGE 0 60 6)
    string(SUBSTRING "${hex}00" ${at} 6 three)
    foreach(shift 18 12 6 0)
      math(EXPR digit "(0x${three} >> ${shift}) & 63")
      string(SUBSTRING ${digits} ${digit} 1 digit)
      string(APPEND base64 ${digit})
    endforeach()
  endforeach()
  string(REGEX REPLACE ".$" "=" base64 ${base64}) # 32 octets are one short of a multiple of three
  set(${out} ${base64} PARENT_SCOPE)
endfunction()

function(zobgp_embed_page folder out)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
               ${folder}/page.html ${folder}/page.css ${folder}/page.js)
  file(READ ${folder}/page.css style)
  file(READ ${folder}/page.js script)
  zobgp_sha256_base64("${style}" style_hash)
  zobgp_sha256_base64("${script}" script_hash)
  file(READ ${folder}/page.html html)
  string(CONFIGURE "${html}" page @ONLY)
  configure_file(${folder}/Assets.cpp.in ${out} @ONLY)
endfunction()
