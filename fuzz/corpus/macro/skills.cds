"Data Sheet"
gamesystem "Tiny" "Tiny"
$$define CAT Skills
$$argtype(Attr, choose, "Attribute", "Which one?", "Str|Dex|?checkexp:x>0|*")
$$macro Skill(name, attr, cost) {{
$$macrodesc(Adds a skill)
$$argdesc(name, The name)
$$argdesc(attr:Attr, "Attribute, used")
$$hideMacro()
item "$(name)" $$ifdef(cost)cost $(cost)$$else cost 1$$endif
$$if(cost>2)level 3$$elseif(cost>1)level 2$$endif end
}}
cat $(CAT)
$$Skill(Climb, Str, 3)
$$Skill	Swim	Dex
end
end
