# The vector kernel is compiled once for each instruction set; VectorKernel.cpp picks one at start.
set(KERNEL_DIR ${CMAKE_CURRENT_LIST_DIR})
# The vector types' calling conventions don't matter: no such routine leaves its file.
set(KERNEL_FLAGS -O3 -fno-math-errno -fno-trapping-math -ffp-contract=fast -Wno-psabi)

set_source_files_properties(${KERNEL_DIR}/KernelBaseline.cpp PROPERTIES COMPILE_OPTIONS "${KERNEL_FLAGS}")
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
  target_compile_definitions(quorl_dsp_kernel PRIVATE QUORL_KERNEL_X86)
  set_source_files_properties(${KERNEL_DIR}/KernelAvx2.cpp PROPERTIES
    COMPILE_OPTIONS "${KERNEL_FLAGS};-mavx2;-mfma")
  set_source_files_properties(${KERNEL_DIR}/KernelAvx512.cpp PROPERTIES
    COMPILE_OPTIONS "${KERNEL_FLAGS};-mavx512f;-mavx512bw;-mavx512dq;-mavx512vl;-mavx2;-mfma;-mprefer-vector-width=512")
else()
  set_source_files_properties(${KERNEL_DIR}/KernelAvx2.cpp ${KERNEL_DIR}/KernelAvx512.cpp PROPERTIES
    HEADER_FILE_ONLY TRUE)
endif()
