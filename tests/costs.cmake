# Read by CTest: the longest tests start first, where no earlier run has shown how long each takes.
set_tests_properties(MachineFaults.OfStreamsAndEnvironmentSpoilNoBoard PROPERTIES COST 40)
set_tests_properties(MachineFaults.OfImagesAreToldWhenTheyAreSent PROPERTIES COST 17)
set_tests_properties(Cli.ExitStatusTellsTheCause CliNetworkPort.BringsUpAndProgramsABoardBehindAServer
    Steps.EndWithTheStatusAndTellWhatWasAwaited NetworkPort.FailureToOpenSaysWhereAndWhatToDo PROPERTIES COST 10)

# ./test runs twice as many tests as there are processors, as most wait for a line; these keep one busy all the time.
foreach(play RANGE 11)
    set_tests_properties(Play.NothingThatIsDoneBreaksTheWindow/${play} PROPERTIES COST 9 PROCESSORS 2)
endforeach()
