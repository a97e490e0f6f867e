if(CARVELLO_SANITIZE)
  add_compile_options(-fsanitize=${CARVELLO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${CARVELLO_SANITIZE})
endif()
