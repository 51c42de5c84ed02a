"Data Sheet file v. 1" gamesystem Fenwick title "Fenwick marsh lore" version 253 level 2
copyright "Made up for tests"
pageinfo lm 1080 rm 1080 tm 1080 bm 1080 tabwidth 0 columns 0 columnSpacing 720
charstyle 0 facename "Times New Roman" pointsize 220 pitch 18 charset 0
textcolor 0 firstindent 0 lineheight 0 just 0 deftab 720 tabs 1 360 0 end
datafile reeds.cds end
help marsh.hlp
define var Damp 2 end
cat Crafts sort 0
item Wading cat Outdoor formula x*2 varname Wading level 1
item Netting cat Outdoor formula x*3 varname Netting level 1
end
cat Kit
sublist Satchels memlist item Twine cost 1 end
item Lantern cost 4
end
strings Greeting "Well met" Farewell "Fare thee well" end
options list Mods mult Heavy 2 add Bright 1 ulist Tints text Amber amber end end
list mods percent Damp 10 end end
cdelay 1
end
