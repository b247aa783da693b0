tarnwell_fuzz_target(composition_reader
    SOURCE ${CMAKE_CURRENT_LIST_DIR}/CompositionReaderFuzz.cpp
    LINKS tarnwell_compositions)
tarnwell_fuzz_target(composition_expression
    SOURCE ${CMAKE_CURRENT_LIST_DIR}/CompositionExpressionFuzz.cpp
    LINKS tarnwell_compositions)
tarnwell_fuzz_target(composition_kernel
    SOURCE ${CMAKE_CURRENT_LIST_DIR}/CompositionKernelFuzz.cpp
    LINKS tarnwell_compositions)
tarnwell_fuzz_target(composition_evaluator
    SOURCE ${CMAKE_CURRENT_LIST_DIR}/CompositionEvaluatorFuzz.cpp
    LINKS tarnwell_compositions)
