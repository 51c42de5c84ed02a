# Tarnwick tools, the first half. It names itself and ashgrove.cds as data files, so loading it
# brings ashgrove in behind it. A macro writes the costs of the kit.
"Data Sheet file v. 1" gamesystem Tarnwick title "Brindle tools" version 253 level 3
copyright "Written for the loader tests"
datafile brindle.cds ASHGROVE.cds end
define var Grain 3 func Edge(n) n+Grain end
$$define KitCost 1
cat Tools
item Chisel priority 1 cost 2
item Mallet cost 3
sublist Kits memlist item Awl cost $(KitCost) end
end
options list Finishes begin add Oiled 1 alias Oil end mult Waxed 2 end end
strings Maker Brindle end
end
