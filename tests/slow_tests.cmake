# Whole runs that take more than five seconds each: `ctest -LE slow` leaves them out while
# working on a change, CI runs them all. Read by ctest after the tests are discovered.
foreach(test
    TrayRunE2e.KilledAtAnyMomentLeavesWholeLinesAndAppendNumbersOn
    TrayRunE2e.SigtermStopsAtTheNextCheckpointAndAppendCarriesTheNumbersOn
    TrayRunE2e.SignalsPauseResumeAndAbortARunOnThePseudoTerminals
    AnalysisRun.KilledBetweenTheFixAndSynRecordsTheNextRunNumbersAfterBoth
    AnalysisRun.ZorvelRunAgainstZorvelSimOverPseudoTerminals
    RunWindowTray.F11PausesAndResumesAndF5AbortsWhileTheWindowAnswers)
  set_tests_properties(${test} PROPERTIES LABELS slow)
endforeach()
