add_dependencies(test_sim zavdrvr-sim)
