// Keeps the room a library until its first source arrives.
