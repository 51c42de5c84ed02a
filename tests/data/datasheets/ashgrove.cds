# Tarnwick tools, the second half: a Chisel of higher priority than brindle's, and more Kits.
"Data Sheet file v. 1" gamesystem Tarnwick title "Ashgrove tools" version 253 level 3
datafile end
define var Grain 5 var Sap 1 end
cat Tools
item Chisel priority 3 cost 4
sublist Kits memlist item Rasp cost 2 end
end
options list Finishes add Limed 1 end end
end
