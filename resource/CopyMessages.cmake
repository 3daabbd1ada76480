file(GLOB messages ${SRC}/strings_*.h)
foreach(f ${messages})
  file(COPY ${f} DESTINATION ${DST})
endforeach()
