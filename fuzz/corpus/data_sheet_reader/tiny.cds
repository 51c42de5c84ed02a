"Data Sheet file v. 1" gamesystem Tiny version 253 level 1
cat Skills
item Climb formula x*2 level 1
end
end
