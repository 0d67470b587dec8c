# roamwise_embed(TARGET NAME FILE): compiles FILE into TARGET as the
# std::string_view tripkit::resources::NAME (declared in tripkit/resources.h),
# so shipped data needs no install step and cannot go missing at run time.
function(roamwise_embed target name file)
  set(out "${CMAKE_CURRENT_BINARY_DIR}/embedded/${name}.cpp")
  add_custom_command(
    OUTPUT "${out}"
    COMMAND ${CMAKE_COMMAND} -DIN=${file} -DOUT=${out} -DNAME=${name}
            -P "${PROJECT_SOURCE_DIR}/cmake/EmbedFile.cmake"
    DEPENDS "${file}" "${PROJECT_SOURCE_DIR}/cmake/EmbedFile.cmake"
    COMMENT "Embedding ${name}")
  target_sources(${target} PRIVATE "${out}")
endfunction()
